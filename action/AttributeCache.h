#pragma once
// The attribute a name in compiled action code stands for, remembered per
// attribute table. A compiled tree is shared by every thread that evaluates
// it and usually serves one document, so one entry suffices: a look-up by
// name costs a hash of the name, a hit two atomic loads and a compare.
//
// The entry is a sequence lock: a writer makes the version odd, stores, and
// makes it even again; a reader trusts what it read only when the version was
// even and unchanged around its reads. Writers that find the entry busy
// simply do not cache. The table's stamp (Props::Stamp) changes whenever a
// name may come to mean another attribute, so a stale entry never matches.
#include <atomic>
#include <cstdint>
#include <string>

class Attribute;
class Node;
class Props;

class AttributeCache {
public:
    AttributeCache() = default;
    AttributeCache(const AttributeCache&) = delete;
    AttributeCache& operator=(const AttributeCache&) = delete;

    // The attribute `name` names in `props`; null when there is none.
    const Attribute* Find(const Props* props, const std::string& name) const;
    // The same for the document of `note`; null without a document.
    const Attribute* Find(const Node* note, const std::string& name) const;

private:
    mutable std::atomic<uint32_t> version{0};
    mutable std::atomic<uint64_t> stamp{0};
    mutable std::atomic<const Attribute*> attribute{nullptr};
};

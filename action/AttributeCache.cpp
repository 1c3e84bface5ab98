#include "AttributeCache.h"

#include "Hypertext.h"
#include "Node.h"
#include "Props.h"

const Attribute* AttributeCache::Find(const Props* props, const std::string& name) const {
    if (!props)
        return nullptr;
    uint64_t wanted = props->Stamp();
    uint32_t before = version.load(std::memory_order_acquire);
    if ((before & 1) == 0) {
        uint64_t cachedStamp = stamp.load(std::memory_order_relaxed);
        const Attribute* cached = attribute.load(std::memory_order_relaxed);
        std::atomic_thread_fence(std::memory_order_acquire);
        if (version.load(std::memory_order_relaxed) == before && cachedStamp == wanted && wanted != 0)
            return cached;
    }
    const Attribute* found = props->Find(name);
    if ((before & 1) == 0 && version.compare_exchange_strong(before, before + 1, std::memory_order_acquire)) {
        stamp.store(wanted, std::memory_order_relaxed);
        attribute.store(found, std::memory_order_relaxed);
        version.store(before + 2, std::memory_order_release);
    }
    return found;
}

const Attribute* AttributeCache::Find(const Node* note, const std::string& name) const {
    Hypertext* document = note ? note->GetHypertext() : nullptr;
    return document ? Find(document->AttributeStorage(), name) : nullptr;
}

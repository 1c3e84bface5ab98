#pragma once
// Finds notes of a note's document: by name, by id, as prototypes. Every
// lookup goes through the document's NodeIndex; a null or invalid note, or a
// note outside any document, finds nothing.
#include <cstdint>
#include <string>

#include "NodeFacade.h"

class Link;
class NodeIndex;

class NodeFinder : public NodeFacade {
public:
    using NodeFacade::NodeFacade;

    // The document's index, or null.
    virtual NodeIndex* Index() const;
    // A note of the document with exactly this name, or null.
    virtual Node* FindNodeNamed(const std::string& name) const;
    // A prototype of the document with this name, or null.
    virtual Node* FindPrototypeNamed(const std::string& name) const;
    virtual Node* Find(uint32_t id) const;
    virtual Node* Find(uint32_t id, const std::string& creator) const;
    // Whether `other` is a live note of this document.
    virtual bool HasNode(const Node* other) const;
    // Whether the link belongs to this document and its source is indexed.
    virtual bool HasLink(const Link* link) const;
    // The note's path from the root ("/" then the names, "/" between), or ""
    // when the note is not indexed in its document.
    virtual std::string DefaultPathname() const;
};

#pragma once
// The left side of an assignment, such as `$Name(designator)[index].facet`,
// cut into its parts: the attribute's name, the designator of the notes to
// change, an index into a list or a key of a dictionary (computed when the
// token is made), and a facet such as "year" or "red".
#include <string>

#include "NodeVector.h"

class MatchList;
class Node;

class AttributeToken {
public:
    // Cuts `text`, in this order: a leading "$"; `[index]` up to the last
    // "]" (the index is computed on `note` now); a facet behind the last "."
    // or ":" after the last ")"; `(designator)` up to the last ")".
    AttributeToken(const std::string& text, Node* note, MatchList& matches);

    const std::string& Name() const { return name; }
    const std::string& Facet() const { return facet; }
    const std::string& Index() const { return index; }
    const std::string& Designator() const { return designator; }
    bool HasIndex() const { return hasIndex; }
    bool HasFacet() const { return !facet.empty(); }

    // The one note the designator names (the note itself without one).
    Node* TargetFor(Node* note, MatchList& matches) const;
    // The notes to change: the note itself without a designator; otherwise
    // every note the designator names, or, when it names none, every note
    // named by the text the designator computes to.
    NodeVector TargetsFor(Node* note, MatchList& matches) const;

private:
    std::string name;
    std::string facet;
    std::string index;
    std::string designator;
    bool hasIndex = false;
};

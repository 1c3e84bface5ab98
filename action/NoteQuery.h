#pragma once
// A query over the notes of a document, evaluated the way an agent evaluates
// its query: the expression is compiled once; each note is tested with
// itself as `that`; notes whose Searchable is false are left out, aliases
// are not tested themselves, and a note whose own value does not satisfy
// the query may still be found through one of its aliases.
#include <string>

#include "AAValue.h"
#include "AttributeCache.h"
#include "NodeVector.h"

class Hypertext;
class MatchList;
class Node;

class NoteQuery {
public:
    NoteQuery(const std::string& text, bool caseSensitive);

    // Whether the note satisfies the query; `matches` receives its captures.
    bool Matches(Node* note, MatchList& matches) const;
    // Every matching note below the document's root, in outline order.
    NodeVector FindAll(Hypertext* document) const;

    bool IsValid() const { return tree != nullptr; }

private:
    bool Holds(Node* note, MatchList& matches) const;

    AAValuePtr tree;
    AttributeCache searchable;
};

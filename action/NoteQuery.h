#pragma once
// A query over the notes of a document, evaluated the way an agent evaluates
// its query: the expression is compiled once; each note is tested with
// itself as `that`; notes whose Searchable is false are left out, aliases
// are not tested themselves, and a note whose own value does not satisfy
// the query may still be found through one of its aliases.
#include <string>

#include "AAValue.h"
#include "AttributeCache.h"
#include "Node.h"
#include "NodeVector.h"
#include "PropertyList.h"

class Hypertext;
class MatchList;

// Visits `first` and each note after it in outline order (n = n->Next())
// up to `end`, not included, stopping early when `stop()` answers true
// before a visit. A scan of every note waits mostly on memory (the note,
// its list of values, the values), so the walk asks for the notes two
// places ahead and the value list of the next one while the current one is
// visited. Only reads are made ahead, before the visit: the visit may
// change the tree, and the next note is taken after it as always.
template <typename Stop, typename Visit>
void VisitNotesInOutlineOrder(Node* first, Node* end, Stop stop, Visit visit) {
    auto fetchNote = [](const Node* note) {
        const char* bytes = reinterpret_cast<const char*>(note);
        const char* lock = reinterpret_cast<const char*>(&note->Lock());
        __builtin_prefetch(bytes);
        __builtin_prefetch(bytes + 64);
        __builtin_prefetch(lock - 64);
        __builtin_prefetch(lock);
    };
    for (Node* note = first; note && note != end; note = note->Next()) {
        if (stop())
            return;
        if (Node* next = note->Next(); next && next != end) {
            if (Node* afterNext = next->Next(); afterNext && afterNext != end)
                fetchNote(afterNext);
            const PropertyList& values = next->Properties();
            if (!values.empty()) {
                const char* entries = reinterpret_cast<const char*>(&*values.begin());
                __builtin_prefetch(entries);
                __builtin_prefetch(entries + 64);
                __builtin_prefetch(entries + 128);
            }
        }
        visit(note);
    }
}

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

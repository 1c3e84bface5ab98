#pragma once
// A query over the notes of a document, evaluated the way an agent evaluates
// its query: the expression is compiled once; each note is tested with
// itself as `that`; notes whose Searchable is false are left out, aliases
// are not tested themselves, and a note whose own value does not satisfy
// the query may still be found through one of its aliases.
#include <string>
#include <vector>

#include "AAValue.h"
#include "AttributeCache.h"
#include "Node.h"
#include "NodeVector.h"
#include "PropertyList.h"

class Hypertext;
class MatchList;

// The attributes an expression reads of the note it is computed for
// (`$Name`, not `$Name(designator)`), at most `limit`, as `note`'s
// document defines them: the values a scan fetches ahead.
std::vector<const Attribute*> AttributesReadBy(const AAValue* tree, const Node* note, size_t limit = 4);

// Visits `first` and each note after it in outline order (n = n->Next())
// up to `end`, not included, stopping early when `stop()` answers true
// before a visit. A scan of every note waits mostly on memory (the note,
// its list of values, the values), so the walk asks for the note three
// places ahead, the value list of the one two places ahead and the values
// of `fetched` of the next one while the current one is visited. Only
// reads are made ahead, on the tree as it is before the visit: the visit
// may change the tree, and the next note is taken after it as always.
template <typename Stop, typename Visit>
void VisitNotesInOutlineOrder(Node* first, Node* end, const std::vector<const Attribute*>& fetched, Stop stop,
                              Visit visit) {
    auto following = [end](Node* note) -> Node* {
        Node* next = note ? note->Next() : nullptr;
        return next == end ? nullptr : next;
    };
    for (Node* note = first; note && note != end; note = note->Next()) {
        if (stop())
            return;
        Node* next = following(note);
        Node* second = following(next);
        if (Node* third = following(second)) {
            // What a scan reads of a note lies in its first 144 bytes (see
            // Node.h), the lock, which is written, among them.
            const char* bytes = reinterpret_cast<const char*>(third);
            const char* lock = reinterpret_cast<const char*>(&third->Lock());
            __builtin_prefetch(bytes);
            __builtin_prefetch(bytes + 64);
            __builtin_prefetch(bytes + 128);
            __builtin_prefetch(lock, 1);
        }
        if (second) {
            const PropertyList& values = second->Properties();
            if (!values.empty()) {
                const char* entries = reinterpret_cast<const char*>(&*values.begin());
                __builtin_prefetch(entries);
                __builtin_prefetch(entries + 64);
                __builtin_prefetch(entries + 128);
            }
        }
        if (next) {
            const PropertyList& values = next->Properties();
            for (const Attribute* attribute : fetched)
                if (const Value* value = values.Get(attribute))
                    __builtin_prefetch(value);
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
    // Matches, with the attribute Searchable of the note's document given.
    bool Matches(Node* note, MatchList& matches, const Attribute* searchableAttribute) const;

    AAValuePtr tree;
    AttributeCache searchable;
};

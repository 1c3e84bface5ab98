#include "NoteQuery.h"

#include "Action.h"
#include "Hypertext.h"
#include "MatchList.h"
#include "Node.h"
#include "NodeFacade.h"
#include "Props.h"

#include <algorithm>

std::vector<const Attribute*> AttributesReadBy(const AAValue* tree, const Node* note, size_t limit) {
    std::vector<const Attribute*> found;
    Hypertext* document = note ? note->GetHypertext() : nullptr;
    const Props* props = document ? document->AttributeStorage() : nullptr;
    if (!props)
        return found;
    // A bounded walk over operands and arguments: enough for the queries
    // people write, and never long for a huge one.
    constexpr size_t kMostVisited = 256;
    std::vector<const AAValue*> pending{tree};
    for (size_t visited = 0; !pending.empty() && visited < kMostVisited && found.size() < limit; ++visited) {
        const AAValue* value = pending.back();
        pending.pop_back();
        if (!value)
            continue;
        if (const auto* reference = dynamic_cast<const AAAttributeValue*>(value);
            reference && reference->Designator().empty()) {
            const Attribute* attribute = props->Find(reference->Name());
            if (attribute && std::find(found.begin(), found.end(), attribute) == found.end())
                found.push_back(attribute);
        }
        pending.push_back(value->GetNextArgument());
        pending.push_back(value->Right());
        pending.push_back(value->Left());
    }
    return found;
}

NoteQuery::NoteQuery(const std::string& text, bool caseSensitive)
    : tree(Action::ParseExpression(text, caseSensitive)) {}

bool NoteQuery::Holds(Node* note, MatchList& matches) const {
    matches.CurrentThat(note);
    return AAValue::ComputeTruth(tree.get(), note, matches);
}

bool NoteQuery::Matches(Node* note, MatchList& matches) const {
    return Matches(note, matches, note ? searchable.Find(note, "Searchable") : nullptr);
}

bool NoteQuery::Matches(Node* note, MatchList& matches, const Attribute* searchableAttribute) const {
    if (!tree || !note || note->Invalid() || note->IsAlias())
        return false;
    if (searchableAttribute && !note->GetBoolean(searchableAttribute))
        return false;
    if (Holds(note, matches))
        return true;
    for (Node* alias : note->Aliases()) {
        if (alias && Holds(alias, matches))
            return true;
    }
    return false;
}

NodeVector NoteQuery::FindAll(Hypertext* document) const {
    NodeVector found;
    if (!document || !document->Root())
        return found;
    MatchList matches;
    Node* root = document->Root();
    std::vector<const Attribute*> fetched = AttributesReadBy(tree.get(), root);
    const Attribute* searchableAttribute = searchable.Find(root, "Searchable");
    if (searchableAttribute)
        fetched.push_back(searchableAttribute);
    VisitNotesInOutlineOrder(root->Son(), root->Sentinel(), fetched, [] { return false; }, [&](Node* note) {
        matches.matches.clear();
        if (Matches(note, matches, searchableAttribute))
            found.push_back(note);
    });
    return found;
}

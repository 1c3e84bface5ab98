#include "NoteQuery.h"

#include "Action.h"
#include "Hypertext.h"
#include "MatchList.h"
#include "Node.h"
#include "NodeFacade.h"

NoteQuery::NoteQuery(const std::string& text, bool caseSensitive)
    : tree(Action::ParseExpression(text, caseSensitive)) {}

bool NoteQuery::Holds(Node* note, MatchList& matches) const {
    matches.CurrentThat(note);
    return AAValue::ComputeTruth(tree.get(), note, matches);
}

bool NoteQuery::Matches(Node* note, MatchList& matches) const {
    if (!tree || !note || note->Invalid() || note->IsAlias())
        return false;
    const Attribute* searchableAttribute = searchable.Find(note, "Searchable");
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
    VisitNotesInOutlineOrder(root->Son(), root->Sentinel(), [] { return false; }, [&](Node* note) {
        matches.matches.clear();
        if (Matches(note, matches))
            found.push_back(note);
    });
    return found;
}

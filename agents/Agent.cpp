#include "Agent.h"

#include "Attribute.h"
#include "Hypertext.h"
#include "KindNode.h"
#include "MatchList.h"
#include "Node.h"
#include "NodeActions.h"
#include "NodeFacade.h"
#include "NodeHelpers.h"
#include "NodeIndex.h"
#include "NoteQuery.h"
#include "Value.h"

Agent::Agent(Node* note)
    : note(note), document(note ? note->GetHypertext() : nullptr), id(note ? note->GetID().GetID() : 0), state(note) {}

Node* Agent::Create(Hypertext* document, const std::string& name, Node* parent, Node* after,
                    const std::string& query) {
    if (!document)
        return nullptr;
    // An agent is a note of the agent kind, so that the file keeps it as one.
    if (!parent)
        parent = document->Root();
    SPoint place = NodePosition(parent).FindAPlaceNear(parent, after);
    Node* made = KindNode::CreateForReading(KindNode::Kind::kAgent, parent, after);
    if (!made)
        return nullptr;
    made->SetName(name);
    NodePosition(made).SetPosition(place);
    made->Initialize();
    InitializeSelf(made);
    made->Set("AgentQuery", query);
    return made;
}

void Agent::InitializeSelf(Node* note) {
    note->SetDouble("Width", 3.0);
    note->SetDouble("Height", 3.0);
    note->SetBoolean("HTMLExportChildren", false);
}

bool Agent::IsAgentNote(const Node* note) {
    if (!note || note->IsAlias() || note->Invalid())
        return false;
    if (note->IsAgent())
        return true;
    const Attribute* attribute = note->GetAttribute("AgentQuery");
    return attribute && NodeDefaults(note).HasImmediate(attribute) && !note->GetString(attribute).empty();
}

long Agent::Priority() const { return note ? note->GetLong("AgentPriority") : -1; }

bool Agent::Closing() const {
    return !document || document->IsClosing() || state.IsClosed();
}

bool Agent::Alive(Node* which, uint32_t whichID) const {
    if (!which) {
        which = note;
        whichID = id;
    }
    NodeIndex* index = document ? document->GetIndex() : nullptr;
    return index && index->Find(whichID) == which && !which->IsBeingDeleted();
}

bool Agent::PrepareToMatch() {
    state.PrepareToMatch();
    bool queryChanged = query.Prepare(note);
    return state.Prepare(queryChanged);
}

bool Agent::CanSearch(Node* candidate) const {
    if (!candidate || candidate->IsAlias() || candidate->Invalid())
        return false;
    return candidate->Father() != note;
}

bool Agent::Match(Node* candidate, MatchList& matches) {
    if (!query.IsReady(note) || candidate == note)
        return false;
    if (Closing())
        return false;
    if (searchable ? !candidate->GetBoolean(searchable) : !candidate->GetBoolean("Searchable"))
        return false;
    if (query.Evaluate(candidate, matches))
        return true;
    for (Node* alias : candidate->Aliases()) {
        if (alias && query.Evaluate(alias, matches))
            return true;
    }
    return false;
}

bool Agent::Examine(Node* candidate, MatchList& matches) {
    if (!CanSearch(candidate))
        return false;
    bool matched = Match(candidate, matches);
    Node* original = candidate->GetOriginal();
    if (matched)
        state.RecordMatches(original, matches);
    bool changed = matched != state.NowHas(original);
    matches.Reset();
    matches.matches.clear();
    return changed;
}

bool Agent::Do(bool force) {
    lastPassSkipped = false;
    if (!note || note->ReadOnly() || !IsActiveAgent())
        return false;
    // A pass whose query reads nothing but the notes, over a document in
    // which no note has changed since the last pass began, would find just
    // what that pass found: the same matches, hence no change, hence no
    // finishing block and no agent action (an action runs only in that
    // block). Its query text, case rule and children are notes' values and
    // tree too, so a changed query or an alias deleted by hand counts as a
    // change. Such a pass is skipped, and the agent's state and aliases stay
    // as they were. The count is read before anything is looked at, so that
    // a change made while a pass runs makes the next one run. The default
    // values of the attributes the query reads are no note's: a changed
    // definition makes the pass run too.
    uint64_t changeCount = document ? document->ChangeCount() : 0;
    if (!force && scannedAt != 0 && changeCount == scannedAt && query.DependsOnlyOnNotes() &&
        query.Definitions(note) == scannedDefinitions) {
        lastPassSkipped = true;
        return false;
    }
    bool changed = PrepareToMatch();
    if (!query.IsReady(note))
        return changed;
    // The query may have changed: the attributes it names with it.
    std::string definitions = query.DependsOnlyOnNotes() ? query.Definitions(note) : std::string();
    MatchList matches;
    matches.CurrentAgent(note);
    searchable = note->GetAttribute("Searchable");
    if (Closing())
        return changed;
    {
        Hypertext* hypertext = note->GetHypertext();
        StChanges batch(hypertext);
        auto closing = [hypertext] { return hypertext->IsClosing(); };
        std::vector<const Attribute*> fetched = query.AttributesRead(note);
        if (searchable)
            fetched.push_back(searchable);
        // The scan begins after the root: no alias of the root can be made
        // under one of its descendants, and a root counted among the results
        // would be a change on every pass.
        Node* root = hypertext->Root();
        VisitNotesInOutlineOrder(root ? root->Next() : nullptr, nullptr, fetched, closing, [&](Node* candidate) {
            if (Closing())
                return;
            matches.CurrentAgent(note);
            matches.CurrentThat(candidate);
            if (Examine(candidate, matches))
                changed = true;
        });
    }
    // An original that went away since the last pass is no longer examined;
    // its absence from the wanted set is a change too.
    if (state.WantedCount() != state.CountCurrentResults())
        changed = true;
    if (Closing())
        return changed;
    scannedAt = changeCount;
    scannedDefinitions = std::move(definitions);
    if (!changed)
        return false;
    StChanges batch(note->GetHypertext());
    state.RemoveUnwantedNodes();
    state.AddNewNodes();
    PerformActions();
    if (!Alive())
        return true;
    Cleanup(force);
    NodeActions(note).SortNow();
    state.Reconstruct();
    note->Changed(2);
    return true;
}

void Agent::PerformActions() {
    const Value* action = note->Get(std::string("AgentAction"));
    if (!action || action->AsString().empty())
        return;
    StChanges batch(note->GetHypertext());
    // Ids are taken first: an action may delete the agent, or a note
    // further down the list, and a deleted note is known only by its id.
    std::vector<std::pair<Node*, uint32_t>> children;
    for (Node* c = note->Son(); c; c = c->Brother())
        children.emplace_back(c, c->GetID().GetID());
    for (auto [child, childID] : children) {
        if (Closing() || !Alive())
            return;
        if (Alive(child, childID))
            PerformActionOn(child);
    }
}

void Agent::PerformActionOn(Node* child) {
    if (!child || child->Invalid())
        return;
    Node* original = child->GetOriginal();
    if (!state.ResultsContain(original))
        return;
    MatchList matches = state.ResultsFor(original);
    NodeActions(child).PerformAgentActionOn(note, "AgentAction", matches);
}

void Agent::Cleanup(bool force) {
    // "grid", "box", "row" and "column" are the map view's arrangements;
    // until there is a map, new aliases stay where Add put them.
    (void)force;
}

const Attribute* Agent::SortAttribute() const { return note ? note->SortAttribute() : nullptr; }

bool Agent::AcceptsDrop(Node* dropped) const {
    if (!dropped || Priority() == 0)
        return true;
    return dropped->IsAlias() || dropped->Father() == note;
}

void Agent::Loaded() {
    state.Reconstruct();
    query.Prepare(note);
}

#include "AgentState.h"

#include <algorithm>
#include <cmath>

#include "Hypertext.h"
#include "MatchList.h"
#include "Node.h"
#include "NodeActions.h"
#include "NodeFacade.h"
#include "NodeHelpers.h"

namespace {

// The agent's children by the original each is an alias of, the first one first.
std::unordered_map<Node*, Node*> FirstAliases(Node* agent) {
    std::unordered_map<Node*, Node*> found;
    for (Node* c = agent->Son(); c; c = c->Brother()) {
        if (c->IsAlias())
            found.emplace(c->GetOriginal(), c);
    }
    return found;
}

bool Overlaps(double x, double y, double w, double h, Node* other) {
    NodePosition p(other);
    SPoint o = p.GetPosition();
    return x < o.x + p.GetWidth() && o.x < x + w && y < o.y + p.GetHeight() && o.y < y + h;
}

// A spot near (x, y) where a note of size w×h overlaps none of the agent's
// children: down the column first, then to the right.
SPoint AvoidCollision(Node* agent, double x, double y, double w, double h) {
    NodeVector children = NodeFacade(agent).Children();
    const double step = 0.5;
    const size_t rows = 1 + static_cast<size_t>(std::max<double>(1.0, std::sqrt(double(children.size()))));
    for (size_t column = 0; column <= rows; ++column) {
        for (size_t row = 0; row <= rows; ++row) {
            double cx = x + column * (w + step), cy = y + row * (h + step);
            bool free = std::none_of(children.begin(), children.end(),
                                     [&](Node* c) { return Overlaps(cx, cy, w, h, c); });
            if (free)
                return SPoint(cx, cy);
        }
    }
    return SPoint(x, y + (rows + 1) * (h + step));
}

} // namespace

void AgentState::PrepareToMatch() {
    wanted.clear();
    wantedOrder.clear();
    captures.clear();
    previous = current;
}

void AgentState::RecordMatches(Node* original, const MatchList& matches) {
    captures[original] = matches.matches;
    if (wanted.insert(original).second)
        wantedOrder.push_back(original);
}

MatchList AgentState::ResultsFor(Node* original) const {
    MatchList list;
    auto it = captures.find(original);
    if (it != captures.end())
        list.matches = it->second;
    return list;
}

bool AgentState::Prepare(bool queryChanged) {
    if (queryChanged)
        QueryHasChanged();
    if (ResultsHaveBeenAltered()) {
        Reconstruct();
        previous = current;
        return true;
    }
    return queryChanged;
}

void AgentState::QueryHasChanged() {
    NodeVector aliases;
    for (Node* c = agent->Son(); c; c = c->Brother()) {
        if (c->IsAlias())
            aliases.push_back(c);
    }
    for (Node* alias : aliases)
        DeleteNode(alias);
    current.clear();
    previous.clear();
    wanted.clear();
    wantedOrder.clear();
    captures.clear();
    recordedSize = 0;
    Reconstruct();
}

bool AgentState::ResultsHaveBeenAltered() const {
    size_t children = 0;
    for (Node* c = agent->Son(); c; c = c->Brother())
        ++children;
    return children != recordedSize;
}

void AgentState::Reconstruct() {
    current.clear();
    size_t children = 0;
    for (Node* c = agent->Son(); c; c = c->Brother()) {
        ++children;
        current.insert(c->GetOriginal());
    }
    recordedSize = children;
    previous = current;
}

void AgentState::FinalizeDeletions() {
    std::vector<Node*> notes;
    notes.swap(toDelete);
    for (Node* note : notes)
        DeleteNode(note);
}

void AgentState::DeleteNode(Node* note) {
    if (note && !note->IsBeingDeleted())
        NodeDeleter(note).Delete();
}

void AgentState::RemoveUnwantedNodes() {
    if (writing)
        return;
    StChanges batch(agent->GetHypertext());
    std::vector<Node*> unwanted;
    for (Node* note : previous) {
        if (!wanted.count(note))
            unwanted.push_back(note);
    }
    if (unwanted.empty())
        return;
    std::unordered_map<Node*, Node*> aliases = FirstAliases(agent);
    for (Node* original : unwanted) {
        current.erase(original);
        auto it = aliases.find(original);
        Node* alias = it == aliases.end() ? nullptr : it->second;
        // The original may be gone already; OnRemove only runs on a live one.
        if (alias) {
            NodeActions(original).OnRemove(agent);
            DeleteNode(alias);
        }
    }
}

void AgentState::RemoveAliasOf(Node* original) {
    if (writing)
        return;
    NodeActions(original).OnRemove(agent);
    for (Node* c = agent->Son(); c; c = c->Brother()) {
        if (c->IsAlias() && c->GetOriginal() == original) {
            DeleteNode(c);
            return;
        }
    }
}

void AgentState::AddNewNodes() {
    if (writing)
        return;
    Node* after = agent->YoungestSon();
    for (Node* original : wantedOrder) {
        if (previous.count(original))
            continue;
        if (Node* alias = Add(original, after))
            after = alias;
        current.insert(original);
    }
}

Node* AgentState::Add(Node* original, Node* after) {
    double x = 0, y = 0;
    if (agent->GetString("CleanupAction") == "none") {
        NodePosition p(original);
        SPoint free = AvoidCollision(agent, x, y, p.GetWidth(), p.GetHeight());
        x = free.x;
        y = free.y;
    }
    return NodeMaker(agent->GetHypertext()).MakeAlias(original, agent, after, x, y);
}

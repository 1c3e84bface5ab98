#pragma once
// What an agent found: the originals it holds an alias of (`current`), the
// ones it held before this pass (`previous`), and those this pass wants
// (`wanted`, in the order they were found), with each one's captures.
#include <string>
#include <unordered_map>
#include <unordered_set>
#include <vector>

class MatchList;
class Node;

using NodeSet = std::unordered_set<Node*>;

class AgentState {
public:
    explicit AgentState(Node* agent) : agent(agent) {}
    AgentState(const AgentState&) = delete;
    AgentState& operator=(const AgentState&) = delete;

    // Starts a pass: nothing wanted yet, `previous` is what is held.
    void PrepareToMatch();
    void RecordMatches(Node* original, const MatchList& matches);
    bool ResultsContain(Node* original) const { return captures.count(original) > 0; }
    // A match list holding the captures recorded for the original.
    MatchList ResultsFor(Node* original) const;
    bool NowHas(Node* original) const { return current.count(original) > 0; }

    // After the query was read: empties the agent when it changed, and
    // rebuilds the state when a user added or removed children by hand.
    // Answers whether either happened.
    bool Prepare(bool queryChanged);
    // Deletes the agent's aliases and forgets every result.
    void QueryHasChanged();
    bool ResultsHaveBeenAltered() const;
    size_t CountCurrentResults() const { return current.size(); }
    // `current` from the agent's children; `previous` the same.
    void Reconstruct();

    // Notes to delete once the scan is over, never during it.
    void WillDelete(Node* note) { toDelete.push_back(note); }
    void FinalizeDeletions();
    void DeleteNode(Node* note);

    void RemoveUnwantedNodes();
    void RemoveAliasOf(Node* original);
    void AddNewNodes();
    // An alias of the note under the agent after `after`.
    Node* Add(Node* original, Node* after);

    size_t WantedCount() const { return wanted.size(); }
    const std::vector<Node*>& Wanted() const { return wantedOrder; }
    bool IsWriting() const { return writing; }
    void SetWriting(bool w) { writing = w; }
    void WillClose() { closed = true; }
    bool IsClosed() const { return closed; }

private:
    Node* agent;
    NodeSet current;
    NodeSet previous;
    NodeSet wanted;
    std::vector<Node*> wantedOrder;
    std::vector<Node*> toDelete;
    std::unordered_map<Node*, std::vector<std::string>> captures;
    size_t recordedSize = 0;
    bool writing = false;
    bool closed = false;
};

#pragma once
// An agent: a note that runs a query over its document and keeps one alias
// of each note that matches as its child, and may run an action on each.
// The note is an agent when it is of the agent kind, or when it holds an
// AgentQuery of its own. This object holds what the agent knows between
// passes (its parsed query and its results); the AgentManager of the
// document keeps one per agent note.
#include <cstdint>
#include <string>

#include "AgentQuery.h"
#include "AgentState.h"

class Hypertext;
class MatchList;
class Node;

class Agent {
public:
    explicit Agent(Node* note);
    Agent(const Agent&) = delete;
    Agent& operator=(const Agent&) = delete;

    // Makes an agent note named `name` under `parent` (null: the root) after
    // `after`, with the initial values of an agent and the given query.
    static Node* Create(Hypertext* document, const std::string& name, Node* parent, Node* after,
                        const std::string& query);
    // Sets the values every new agent starts with.
    static void InitializeSelf(Node* note);
    // Whether the note is an agent.
    static bool IsAgentNote(const Node* note);

    Node* GetNode() const { return note; }
    uint32_t NoteID() const { return id; }
    long Priority() const;
    // An agent whose priority is negative is off.
    bool IsActiveAgent() const { return Priority() >= 0; }

    // One pass: scans the document and, when anything changed, brings the
    // aliases under the agent up to date, runs the agent action on them,
    // tidies and sorts them. Answers whether the agent's results changed.
    // A pass that could only find what the last one found is skipped.
    bool Do(bool force);
    // Whether the last call of Do skipped its scan.
    bool LastPassSkipped() const { return lastPassSkipped; }
    bool PrepareToMatch();
    bool CanSearch(Node* candidate) const;
    bool Match(Node* candidate, MatchList& matches);
    // Whether the candidate's membership changed; records its match.
    bool Examine(Node* candidate, MatchList& matches);
    void PerformActions();
    void PerformActionOn(Node* child);
    void Cleanup(bool force);
    // The attribute named by Sort, or null.
    const class Attribute* SortAttribute() const;
    bool AcceptsDrop(Node* dropped) const;
    // After the document was read: the state from the children, the query
    // from the values.
    void Loaded();
    void WillClose() { state.WillClose(); }

    AgentQuery& Query() { return query; }
    AgentState& State() { return state; }
    size_t ResultCount() const { return state.CountCurrentResults(); }

private:
    bool Closing() const;
    // Whether a note (the agent itself by default) is still in the document.
    bool Alive(Node* which = nullptr, uint32_t whichID = 0) const;

    Node* note;
    Hypertext* document;
    uint32_t id;
    // Searchable, looked up once per pass rather than by name per note.
    const class Attribute* searchable = nullptr;
    // The document's change count read before the last pass that ran to
    // its end; 0 before the first.
    uint64_t scannedAt = 0;
    bool lastPassSkipped = false;
    // AgentQuery::Definitions as the last pass that ran to its end read it.
    std::string scannedDefinitions;
    AgentQuery query;
    AgentState state;
};

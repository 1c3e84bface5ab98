#pragma once
// The entry points by which action code stored in a note's attributes runs:
// rules, edicts, a parent's OnAdd and OnRemove, an agent's AgentAction. All of
// them reach PerformAction, which compiles the attribute's text through the
// value's own cache and applies it.
#include <string>

#include "NodeFacade.h"

class MatchList;

class NodeActions : public NodeFacade {
public:
    using NodeFacade::NodeFacade;

    // Applies the action held in `target`'s attribute to `source`. Answers
    // false when the attribute holds no valid action. An action that finds
    // its own statements destroyed ends there, quietly.
    static bool PerformAction(Node* target, const std::string& attributeName, Node* source, MatchList& matches);

    // Runs `parent`'s OnAdd on this note, which was just added under it.
    void OnAdd(Node* parent) const;
    // Runs `parent`'s OnRemove on this note, which just left it.
    void OnRemove(Node* parent) const;
    // Runs the agent's AgentAction on this note with the match of its query.
    void PerformAgentActionOn(Node* agent, const std::string& attributeName, MatchList& matches) const;

    // The note's rule; false when it did not run.
    bool RunRule() const;
    // Whether the note's Edict holds any text.
    bool HasEdict() const;
    // The note's edict; false when it did not run.
    bool PerformEdict() const;

    // Sorts the note's children by its Sort attributes, when it names one.
    void SortNow() const;

    // Whether the document forbids event actions now (while it is read).
    bool ActionsAreInhibited() const;
};

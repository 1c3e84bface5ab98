#include "AgentQuery.h"

#include "Action.h"
#include "MatchList.h"
#include "Node.h"
#include "NoteQuery.h"

bool AgentQuery::Prepare(Node* agent) {
    if (!agent)
        return false;
    std::string newText = agent->GetString("AgentQuery");
    bool newCase = agent->GetBoolean("AgentCaseSensitive");
    if (prepared && newText == text && newCase == caseSensitive)
        return false;
    bool changed = prepared;
    prepared = true;
    text = newText;
    caseSensitive = newCase;
    AAValuePtr parsed = text.empty() ? nullptr : Action::ParseExpression(text, caseSensitive);
    // Text that does not parse whole leaves the agent without a query.
    if (parsed && !parsed->IsValid(agent))
        parsed.reset();
    SetQuery(std::move(parsed));
    return changed;
}

bool AgentQuery::IsReady(Node* agent) {
    if (tree)
        return true;
    Prepare(agent);
    return tree != nullptr;
}

bool AgentQuery::Evaluate(Node* note, MatchList& matches) const {
    if (!tree || !note)
        return false;
    matches.CurrentThat(note);
    return AAValue::ComputeTruth(tree.get(), note, matches);
}

std::vector<const Attribute*> AgentQuery::AttributesRead(const Node* agent) const {
    return AttributesReadBy(tree.get(), agent);
}

#include "NodeActions.h"

#include "Action.h"
#include "Attribute.h"
#include "Hypertext.h"
#include "MatchList.h"
#include "Node.h"
#include "NodeSorting.h"
#include "Value.h"

namespace {
// Rules and edicts run with the note as `that`; the rest of the context is empty.
bool RunOwnAction(Node* note, const char* attribute, const char* disabled) {
    if (!note || note->Invalid())
        return false;
    Hypertext* document = note->GetHypertext();
    if (!document || document->IsClosing() || note->GetBoolean(disabled))
        return false;
    MatchList matches;
    matches.CurrentThat(note);
    NodeActions::PerformAction(note, attribute, note, matches);
    return true;
}
} // namespace

bool NodeActions::PerformAction(Node* target, const std::string& attributeName, Node* source, MatchList& matches) {
    if (!target || !source || target->Invalid() || source->Invalid())
        return false;
    const Value* value = target->Get(attributeName);
    if (!value)
        return false;
    Action* action = value->AsAgentAction(target->GetHypertext());
    if (!action || !action->IsValid(source))
        return false;
    try {
        action->Apply(source, matches);
    } catch (const ActionDeletedException&) {
    }
    return true;
}

bool NodeActions::ActionsAreInhibited() const {
    Hypertext* document = node ? node->GetHypertext() : nullptr;
    return !document || document->ActionsInhibited() || document->IsBeingRead();
}

void NodeActions::OnAdd(Node* parent) const {
    if (!node || !parent || ActionsAreInhibited())
        return;
    MatchList matches;
    matches.CurrentThat(node);
    PerformAction(parent, "OnAdd", node, matches);
}

void NodeActions::OnRemove(Node* parent) const {
    if (!node || !parent || ActionsAreInhibited())
        return;
    MatchList matches;
    matches.CurrentThat(node);
    PerformAction(parent, "OnRemove", node, matches);
}

void NodeActions::PerformAgentActionOn(Node* agent, const std::string& attributeName, MatchList& matches) const {
    if (!node || !agent)
        return;
    MatchList local = matches;
    local.CurrentThat(node);
    local.CurrentAgent(agent);
    PerformAction(agent, attributeName, node, local);
    matches = local;
}

bool NodeActions::RunRule() const { return RunOwnAction(node, "Rule", "RuleDisabled"); }

bool NodeActions::HasEdict() const { return node && !node->GetString("Edict").empty(); }

bool NodeActions::PerformEdict() const {
    // The edict may have been cleared since it was queued.
    if (!HasEdict())
        return false;
    return RunOwnAction(node, "Edict", "EdictDisabled");
}

void NodeActions::SortNow() const {
    if (!node || !node->SortAttribute() || !node->Son())
        return;
    auto comparison = AttributeValueComparator::ForContainer(node);
    if (!comparison)
        return;
    // A new order is a change to the notes (what is named first in an
    // export, the order agents find notes in), though no value changed.
    if (node->SortChildren(TreeComparator(comparison)))
        if (Hypertext* document = node->GetHypertext())
            document->CountChange();
}

#include "ActionHooks.h"

#include <mutex>

#include "AAValue.h"
#include "Action.h"
#include "ActionPool.h"
#include "HTPath.h"
#include "MatchList.h"
#include "Node.h"
#include "NodeFacade.h"
#include "Value.h"
#include "Hooks.h"

void InstallActionHooks() {
    static std::once_flag once;
    std::call_once(once, [] {
        Hooks& values = EditHooks();
        values.createAction = [](const std::string& text) -> Action* { return Action::Create(text).release(); };
        values.recycleAction = [](Hypertext* document, Action* action) {
            if (ActionPool* pool = ActionPool::For(document))
                pool->Add(action);
            else
                ActionPool::Orphans().Add(action);
        };
        values.parseAction = [](const std::string& text) -> std::shared_ptr<void> {
            AAValuePtr tree = Action::ParseExpression(text, true);
            return std::shared_ptr<AAValue>(tree.release());
        };
        values.evaluateAction = [](const std::shared_ptr<void>& parsed, const Node* note) -> std::string {
            MatchList matches;
            matches.CurrentThat(const_cast<Node*>(note));
            auto* tree = static_cast<const AAValue*>(parsed.get());
            return AAValue::ComputeValue(tree, const_cast<Node*>(note), matches).AsString();
        };

        Hooks& core = EditHooks();
        core.findPath = [](Node* from, const std::string& path) -> Node* {
            MatchList matches;
            return HTPath::Get(from, path, matches);
        };
        // The display name: the DisplayExpression computed for the note,
        // unless it is empty or turned off.
        core.displayName = [](const Node* note) -> std::string {
            if (!note)
                return std::string();
            // An expression that reads display names (its own, through
            // $DisplayName) would otherwise call itself without end.
            thread_local int depth = 0;
            struct StDepth {
                StDepth() { ++depth; }
                ~StDepth() { --depth; }
            } level;
            if (depth > 4)
                return note->Name();
            const Value* expression = note->Get(std::string("DisplayExpression"));
            if (!expression || expression->AsString().empty() || note->GetBoolean("DisplayExpressionDisabled"))
                return note->Name();
            return expression->EvaluateFor(note);
        };
    });
}

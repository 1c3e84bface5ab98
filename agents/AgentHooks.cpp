#include "AgentHooks.h"

#include <mutex>

#include "ActionHooks.h"
#include "Hooks.h"
#include "NodeActions.h"

void InstallAgentHooks() {
    InstallActionHooks();
    static std::once_flag once;
    std::call_once(once, [] {
        Hooks& core = EditHooks();
        core.onAdd = [](Node* note, Node* father) { NodeActions(note).OnAdd(father); };
        core.onRemove = [](Node* note, Node* oldFather) { NodeActions(note).OnRemove(oldFather); };
    });
}

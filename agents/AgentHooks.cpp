#include "AgentHooks.h"

#include <mutex>

#include "ActionHooks.h"
#include "CoreHooks.h"
#include "NodeActions.h"

void InstallAgentHooks() {
    InstallActionHooks();
    static std::once_flag once;
    std::call_once(once, [] {
        CoreHooks& core = GetCoreHooks();
        core.onAdd = [](Node* note, Node* father) { NodeActions(note).OnAdd(father); };
        core.onRemove = [](Node* note, Node* oldFather) { NodeActions(note).OnRemove(oldFather); };
    });
}

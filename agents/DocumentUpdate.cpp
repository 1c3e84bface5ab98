#include "DocumentUpdate.h"

#include "AgentManager.h"
#include "Hypertext.h"
#include "NodeFacade.h"
#include "RuleManager.h"

void UpdateAgentsNow(Hypertext* document) {
    if (!document || !AgentManager::Enabled())
        return;
    StChanges batch(document);
    AgentManager::For(document)->UpdateNow();
    RuleManager::For(document)->RunEdicts();
}

void UpdateDocument(Hypertext* document) {
    if (!document)
        return;
    UpdateAgentsNow(document);
    RuleManager::For(document)->RunAll();
}

#include "RuleManager.h"

#include "Action.h"
#include "Attribute.h"
#include "Node.h"
#include "NodeActions.h"
#include "NodeFacade.h"
#include "NodeIndex.h"
#include "NotificationCenter.h"
#include "Props.h"
#include "Value.h"
#include "WorkQueue.h"

RuleManager* RuleManager::For(Hypertext* document) {
    if (!document)
        return nullptr;
    return static_cast<RuleManager*>(
        document->Part("RuleManager", [document] { return std::make_unique<RuleManager>(document); }));
}

void RuleManager::ScheduleRules(long count, WorkQueue& queue) {
    queue.AddOperation([this, count] { Run(count); }, kQueuePriority);
}

long RuleManager::Run(long count) {
    StChanges batch(document);
    long ran = 0;
    for (long i = 0; i < count; ++i) {
        if (Run())
            ++ran;
        if (!cursor)
            break;
    }
    return ran;
}

bool RuleManager::Run() {
    bool wasSet = LiveCursor() != nullptr;
    Next();
    if (wasSet && !cursor) {
        FinishScan();
        if (Next()) {
            NotifyObservers(cursor);
            return RunFor(cursor);
        }
        return false;
    }
    if (!cursor) {
        // A walk from the top that met no rule at all is a whole scan too.
        FinishScan();
        return false;
    }
    NotifyObservers(cursor);
    return RunFor(cursor);
}

void RuleManager::NotifyObservers(Node* note, const std::string& prefix) {
    if (!note)
        return;
    Notification n;
    n.name = kRuleNotification;
    n.object = document;
    n.userInfo["name"] = prefix + note->Name();
    n.userInfo["hypertext"] = static_cast<const void*>(document);
    n.userInfo["number"] = NodeFacade(note).OutlineOrder();
    n.userInfo["max"] = HypertextFacade(document).NodeCount();
    NotificationCenter::Default().Post(std::move(n));
}

void RuleManager::PostDocumentNotification(const char* name) {
    Notification n;
    n.name = name;
    n.object = document;
    NotificationCenter::Default().Post(std::move(n));
}

long RuleManager::RunAll() {
    StChanges batch(document);
    SetCursor(nullptr);
    long ran = 0;
    while (Next()) {
        if (RunFor(cursor))
            ++ran;
    }
    FinishScan();
    return ran;
}

Node* RuleManager::Next() {
    if (!document || document->IsClosing()) {
        SetCursor(nullptr);
        return nullptr;
    }
    Node* from = LiveCursor();
    // A walk from the top of a document that has no rule meets none, as
    // long as no note has changed since the last such walk: every tick of
    // a large document without rules would otherwise walk all its notes.
    uint64_t changeCount = document->ChangeCount();
    if (!from && noRulesAt == changeCount)
        return nullptr;
    bool fromTop = !from;
    if (!from)
        from = document->Root();
    // A walk may pass every note of a large document without meeting a
    // rule (every tick of a document that has none): the two attributes are
    // looked up once for the walk, not by name for every note.
    const Props* props = document->AttributeStorage();
    const Attribute* disabled = props ? props->Find("RuleDisabled") : nullptr;
    const Attribute* rule = props ? props->Find("Rule") : nullptr;
    for (Node* n = from ? NodeFacade(from).Next() : nullptr; n; n = NodeFacade(n).Next()) {
        if (n->Invalid() || n->IsAlias())
            continue;
        if (disabled && rule && n->GetHypertext() == document) {
            if (n->GetBoolean(disabled))
                continue;
            SetCursor(n);
            if (RuleOf(n, rule))
                return n;
            continue;
        }
        if (n->GetBoolean("RuleDisabled"))
            continue;
        SetCursor(n);
        if (GetRule(n))
            return n;
    }
    SetCursor(nullptr);
    if (fromTop)
        noRulesAt = changeCount;
    return nullptr;
}

Action* RuleManager::GetRule(Node* note) {
    if (!note || note->GetBoolean("RuleDisabled"))
        return nullptr;
    return RuleOf(note, nullptr);
}

Action* RuleManager::RuleOf(Node* note, const Attribute* ruleAttribute) {
    const Value* rule = nullptr;
    if (!ruleAttribute)
        rule = note->Get(std::string("Rule"));
    else if (ruleAttribute->IsValid())
        rule = note->Get(ruleAttribute);
    if (!rule)
        return nullptr;
    if (const auto* text = dynamic_cast<const StringValue*>(rule); text ? text->Text().empty() : rule->AsString().empty())
        return nullptr;
    Action* action = rule->AsAgentAction(note->GetHypertext());
    return action && action->IsValid(note) ? action : nullptr;
}

void RuleManager::Remove(Node* note) {
    if (note && note == cursor)
        SetCursor(nullptr);
}

void RuleManager::FinishScan() {
    hasRun = false;
    ++scans;
}

bool RuleManager::RunFor(Node* note) {
    if (!NodeActions(note).RunRule())
        return false;
    hasRun = true;
    ranSince = true;
    ++rulesRun;
    return true;
}

Node* RuleManager::LiveCursor() {
    if (!cursor)
        return nullptr;
    // A rule may have deleted its own note (or any other): the cursor's note
    // is looked up again by its id before the walk goes on from it.
    NodeIndex* index = document->GetIndex();
    if (!index || index->Find(cursorID) != cursor || cursor->Invalid())
        SetCursor(nullptr);
    return cursor;
}

void RuleManager::SetCursor(Node* note) {
    cursor = note;
    cursorID = note ? note->GetID().GetID() : 0;
}

long RuleManager::RunEdicts() {
    StChanges batch(document);
    long ran = 0;
    HypertextFacade(document).Apply([&ran](Node* note) {
        NodeActions actions(note);
        if (actions.HasEdict() && actions.PerformEdict())
            ++ran;
    });
    return ran;
}

long RuleManager::ScheduleEdicts(WorkQueue& queue) {
    long queued = 0;
    HypertextFacade(document).Apply([&](Node* note) {
        if (!NodeActions(note).HasEdict())
            return;
        uint32_t id = note->GetID().GetID();
        queue.AddOperation(
            [this, id] {
                Node* found = document->GetIndex() ? document->GetIndex()->Find(id) : nullptr;
                if (!found)
                    return;
                NotifyObservers(found, "edict: ");
                NodeActions(found).PerformEdict();
            },
            kQueuePriority);
        ++queued;
    });
    return queued;
}

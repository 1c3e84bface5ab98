#pragma once
// Runs the rules of a document's notes a few at a time: a cursor walks the
// notes in outline order, and each call runs the next notes that have a
// rule, so that a large document's rules run in small slices between other
// work. Edicts, which run seldom, are run here too.
#include <atomic>
#include <cstdint>
#include <string>

#include "Hypertext.h"

class Action;
class Attribute;
class Node;
class WorkQueue;

class RuleManager : public DocumentPart {
public:
    // Notes with rules run per tick.
    static constexpr long kRulesPerTick = 25;
    // Queue priority of rule and edict operations: below agents.
    static constexpr int kQueuePriority = -4;
    // Posted on the main thread before a note's rule (or edict) runs, with
    // "name" (the note's name, or "edict: " and the name), "hypertext" (the
    // document), "number" (the note's outline order) and "max" (the number
    // of notes).
    static constexpr const char* kRuleNotification = "com.morvent.Rylvane.ruleWillRun";
    // Posted as the edict tick begins, and once it has queued every edict.
    static constexpr const char* kEdictsWillRunNotification = "com.morvent.Rylvane.edictsWillRun";
    static constexpr const char* kEdictsDidRunNotification = "com.morvent.Rylvane.edictsDidRun";

    explicit RuleManager(Hypertext* document) : document(document) {}

    // The manager of a document, made on first use; null without a document.
    static RuleManager* For(Hypertext* document);

    // Queues one operation that runs `count` rules.
    void ScheduleRules(long count, WorkQueue& queue);
    // Runs up to `count` notes' rules, in one batch; stops early at the end
    // of a scan. Answers how many rules ran.
    long Run(long count);
    // The next note's rule; answers whether a rule ran.
    bool Run();
    // Runs every rule from the top to the end of the document, in one batch.
    // Answers how many ran.
    long RunAll();
    // Moves the cursor to the next note that has a rule; null at the end.
    Node* Next();
    // The compiled rule of a note, or null.
    static Action* GetRule(Node* note);
    // Posts the rule notification for a note; `prefix` goes before its name.
    void NotifyObservers(Node* note, const std::string& prefix = std::string());
    // Posts a notification about the document with no user information.
    void PostDocumentNotification(const char* name);
    // Resets the cursor when it stands at a note that is going away.
    void Remove(Node* note);

    // Every note's edict, at once. Answers how many ran.
    long RunEdicts();
    // Queues one operation per note that has an edict, and a closing one
    // that calls `done`.
    long ScheduleEdicts(WorkQueue& queue);

    Node* Cursor() const { return cursor; }
    // Whether a rule ran in the present scan.
    bool HasRun() const { return hasRun; }
    // Full scans finished, and rules run, for progress reports.
    long ScansFinished() const { return scans.load(); }
    long RulesRun() const { return rulesRun.load(); }
    // Whether any rule ran since the last call; clears the flag.
    bool TakeRuleActivity() { return ranSince.exchange(false); }

private:
    // The compiled rule of a note whose rule is not disabled: the value of
    // `ruleAttribute`, or of the attribute named "Rule" when null.
    static Action* RuleOf(Node* note, const Attribute* ruleAttribute);
    void FinishScan();
    bool RunFor(Node* note);
    // The cursor, or null when its note has been deleted.
    Node* LiveCursor();
    void SetCursor(Node* note);

    Hypertext* document;
    Node* cursor = nullptr;
    uint32_t cursorID = 0;
    // The change count at the start of the last walk from the top that met
    // no rule (0: none yet).
    uint64_t noRulesAt = 0;
    bool hasRun = false;
    std::atomic<long> scans{0};
    std::atomic<long> rulesRun{0};
    std::atomic<bool> ranSince{false};
};

#pragma once
// Functions that make, change or run notes and code: create, delete, stamp,
// do, eval, action, exported text, outside commands, and the platform
// services of sound and notification.
#include <string>

#include "AAValue.h"

// `create(path[, name])`: makes the note at the path unless it exists.
class AACreate : public AAFunction {
public:
    using AAFunction::AAFunction;
    const char* ClassName() const override { return "AACreate"; }
    int Priority() const override { return kPriorityDotOperator; }
    ActionResult ActionValue(Node* note, MatchList& matches) const override;
};

// The same, the new note carrying the query as its AgentQuery.
class AACreateAgent : public AAFunction {
public:
    using AAFunction::AAFunction;
    const char* ClassName() const override { return "AACreateAgent"; }
    ActionResult ActionValue(Node* note, MatchList& matches) const override;
};

// `delete(designator[, name])`: deletes every note named.
class AADelete : public AAFunction {
public:
    using AAFunction::AAFunction;
    const char* ClassName() const override { return "AADelete"; }
    int Priority() const override { return kPriorityDotOperator; }
    ActionResult ActionValue(Node* note, MatchList& matches) const override;
};

// `stamp(name)` or `stamp(designator, name)`: runs the stamp's action.
class AAStamp : public AAFunction {
public:
    using AAFunction::AAFunction;
    const char* ClassName() const override { return "AAStamp"; }
    int Priority() const override { return kPriorityDotOperator; }
    ActionResult ActionValue(Node* note, MatchList& matches) const override;
};

// `do(macro, args...)`: the macro's code with `$1`, `$2`... replaced by the
// arguments, computed on the note.
class AAMacro : public AAFunction {
public:
    using AAFunction::AAFunction;
    const char* ClassName() const override { return "AAMacro"; }
    ActionResult ActionValue(Node* note, MatchList& matches) const override;
};

// `eval(expr)`, `eval(designator, expr)`: the expression's text parsed and
// computed again. Nesting is bounded.
class AAEval : public AAFunction {
public:
    using AAFunction::AAFunction;
    const char* ClassName() const override { return "AAEval"; }
    ActionResult ActionValue(Node* note, MatchList& matches) const override;
    int ResultType(Node* note, MatchList& matches) const override;
};

// `action(text)`, `action(designator, text)`: runs the text as an action.
class AAAction : public AAFunction {
public:
    using AAFunction::AAFunction;
    const char* ClassName() const override { return "AAAction"; }
    ActionResult ActionValue(Node* note, MatchList& matches) const override;
    int ResultType(Node* note, MatchList& matches) const override;
};

// Needs the export layer: answers "".
class AAExport : public AAFunction {
public:
    using AAFunction::AAFunction;
    const char* ClassName() const override { return "AAExport"; }
    ActionResult ActionValue(Node* note, MatchList& matches) const override;
};

// `runCommand(command, input, directory)` and the backtick: an outside
// command, run only when commands are allowed (see CommandTrust.h).
class AAShellValue : public AAFunction {
public:
    using AAFunction::AAFunction;
    const char* ClassName() const override { return "AAShellValue"; }
    ActionResult ActionValue(Node* note, MatchList& matches) const override;
    int ResultType(Node* note, MatchList& matches) const override;
};

// Platform services this system lacks: they compute their arguments and
// answer "".
class AAPlay : public AAFunction {
public:
    using AAFunction::AAFunction;
    const char* ClassName() const override { return "AAPlay"; }
    ActionResult ActionValue(Node* note, MatchList& matches) const override;
};

class AANotify : public AAFunction {
public:
    using AAFunction::AAFunction;
    const char* ClassName() const override { return "AANotify"; }
    ActionResult ActionValue(Node* note, MatchList& matches) const override;
};

class AASpeak : public AABinaryOperator {
public:
    using AABinaryOperator::AABinaryOperator;
    const char* ClassName() const override { return "AASpeak"; }
    ActionResult ActionValue(Node* note, MatchList& matches) const override;
    int ResultType(Node*, MatchList&) const override { return -1; }
    bool IsValid(const Node*) const override { return true; }
};

// Applies the document's stamp of that exact name to the note: runs its
// code there. False when there is no such stamp or no live note.
bool ApplyStamp(Node* note, const std::string& name);

// The depth of nested eval, action and do calls on this thread: code that
// evaluates itself stops here with an empty result and one logged line.
class StNestedCode {
public:
    StNestedCode();
    ~StNestedCode();
    StNestedCode(const StNestedCode&) = delete;
    StNestedCode& operator=(const StNestedCode&) = delete;
    bool TooDeep() const;
    static constexpr int kMaxNesting = 40;
};

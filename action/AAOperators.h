#pragma once
// The operators of action code: `+ - * /`, the comparisons, `&` and `|`
// (binary, with the tables of AABinaryOperator choosing how to compute by
// the kinds of their operands), the prefix `-` and `!`, parentheses and
// `mod`. The odd rules stay odd on purpose, because documents rely on them:
// `"ab" * 0` is "ab0", `<=` is "not greater", a false comparison of texts is
// the empty text and of numbers 0.
#include "AAValue.h"

class AAPlus : public AABinaryOperator {
public:
    using AABinaryOperator::AABinaryOperator;
    const char* ClassName() const override { return "AAPlus"; }
    int Priority() const override { return kPriorityAddition; }
    double Compute(Node* note, MatchList& matches) const override;
    bool ComputeBoolean(Node* note, MatchList& matches) const override;
    double ComputeDate(Node* note, MatchList& matches) const override;
    std::string ComputeSet(Node* note, MatchList& matches) const override;
    std::string ComputeList(Node* note, MatchList& matches) const override;
    std::string ComputeInterval(Node* note, MatchList& matches) const override;
    ActionResult ComputeDictionary(Node* note, MatchList& matches) const override;
    ActionResult ComputeActionResultForString(Node* note, MatchList& matches) const override;
};

class AAMinus : public AABinaryOperator {
public:
    using AABinaryOperator::AABinaryOperator;
    const char* ClassName() const override { return "AAMinus"; }
    int Priority() const override { return kPriorityAddition; }
    // Date minus date is a number of days.
    int ArgumentType(Node* note, MatchList& matches) const override;
    double Compute(Node* note, MatchList& matches) const override;
    double ComputeDate(Node* note, MatchList& matches) const override;
    std::string ComputeSet(Node* note, MatchList& matches) const override;
    std::string ComputeList(Node* note, MatchList& matches) const override;
    std::string ComputeInterval(Node* note, MatchList& matches) const override;
    ActionResult ComputeDictionary(Node* note, MatchList& matches) const override;
    ActionResult ComputeActionResultForString(Node* note, MatchList& matches) const override;
};

class AAMultiply : public AABinaryOperator {
public:
    using AABinaryOperator::AABinaryOperator;
    const char* ClassName() const override { return "AAMultiply"; }
    int Priority() const override { return kPriorityMultiplication; }
    double Compute(Node* note, MatchList& matches) const override;
    std::string ComputeInterval(Node* note, MatchList& matches) const override;
    // A text repeated a number of times.
    ActionResult ComputeActionResultForString(Node* note, MatchList& matches) const override;
};

class AADivide : public AABinaryOperator {
public:
    using AABinaryOperator::AABinaryOperator;
    const char* ClassName() const override { return "AADivide"; }
    int Priority() const override { return kPriorityMultiplication; }
    double Compute(Node* note, MatchList& matches) const override;
    std::string ComputeInterval(Node* note, MatchList& matches) const override;
    ActionResult ComputeActionResultForString(Node* note, MatchList& matches) const override;
};

// `|`: either side; the right side is not computed when the left decides.
class AAOr : public AABinaryOperator {
public:
    using AABinaryOperator::AABinaryOperator;
    const char* ClassName() const override { return "AAOr"; }
    bool Truth(Node* note, MatchList& matches) const override { return OperatorTruth(note, matches); }
    int Priority() const override { return kPriorityOrAnd; }
    double Compute(Node* note, MatchList& matches) const override;
    bool ComputeBoolean(Node* note, MatchList& matches) const override;
    double ComputeDate(Node* note, MatchList& matches) const override;
    std::string ComputeSet(Node* note, MatchList& matches) const override;
    std::string ComputeList(Node* note, MatchList& matches) const override;
    ActionResult ComputeActionResultForString(Node* note, MatchList& matches) const override;
};

// `&`: both sides; the right side is not computed when the left decides.
class AAAnd : public AABinaryOperator {
public:
    using AABinaryOperator::AABinaryOperator;
    const char* ClassName() const override { return "AAAnd"; }
    bool Truth(Node* note, MatchList& matches) const override { return OperatorTruth(note, matches); }
    int Priority() const override { return kPriorityOrAnd; }
    double Compute(Node* note, MatchList& matches) const override;
    bool ComputeBoolean(Node* note, MatchList& matches) const override;
    double ComputeDate(Node* note, MatchList& matches) const override;
    std::string ComputeSet(Node* note, MatchList& matches) const override;
    std::string ComputeList(Node* note, MatchList& matches) const override;
    ActionResult ComputeActionResultForString(Node* note, MatchList& matches) const override;
};

// `=` and `==`. Dates are equal on the same day.
class AAEqual : public AABinaryOperator {
public:
    using AABinaryOperator::AABinaryOperator;
    const char* ClassName() const override { return "AAEqual"; }
    bool Truth(Node* note, MatchList& matches) const override { return OperatorTruth(note, matches); }
    int Priority() const override { return kPriorityComparison; }
    double Compute(Node* note, MatchList& matches) const override;
    bool ComputeBoolean(Node* note, MatchList& matches) const override;
    double ComputeDate(Node* note, MatchList& matches) const override;
    std::string ComputeSet(Node* note, MatchList& matches) const override;
    std::string ComputeList(Node* note, MatchList& matches) const override;
    std::string ComputeColor(Node* note, MatchList& matches) const override;
    std::string ComputeInterval(Node* note, MatchList& matches) const override;
    ActionResult ComputeActionResultForString(Node* note, MatchList& matches) const override;
    bool ComputeTruthForString(Node* note, MatchList& matches) const override;

protected:
    bool IsComparison() const override { return true; }
};

// `!=`: the negation of `=`.
class AANotEqual : public AAEqual {
public:
    using AAEqual::AAEqual;
    const char* ClassName() const override { return "AANotEqual"; }
    ActionResult Modify(const ActionResult& result) const override;
    bool Negates() const override { return true; }
};

class AALess : public AABinaryOperator {
public:
    using AABinaryOperator::AABinaryOperator;
    const char* ClassName() const override { return "AALess"; }
    bool Truth(Node* note, MatchList& matches) const override { return OperatorTruth(note, matches); }
    int Priority() const override { return kPriorityComparison; }
    double Compute(Node* note, MatchList& matches) const override;
    bool ComputeBoolean(Node* note, MatchList& matches) const override;
    double ComputeDate(Node* note, MatchList& matches) const override;
    std::string ComputeInterval(Node* note, MatchList& matches) const override;
    ActionResult ComputeActionResultForString(Node* note, MatchList& matches) const override;
    bool ComputeTruthForString(Node* note, MatchList& matches) const override;

protected:
    bool IsComparison() const override { return true; }
};

// `>=`: the negation of `<`.
class AAGreaterEqual : public AALess {
public:
    using AALess::AALess;
    const char* ClassName() const override { return "AAGreaterEqual"; }
    ActionResult Modify(const ActionResult& result) const override;
    bool Negates() const override { return true; }
};

class AAGreater : public AABinaryOperator {
public:
    using AABinaryOperator::AABinaryOperator;
    const char* ClassName() const override { return "AAGreater"; }
    bool Truth(Node* note, MatchList& matches) const override { return OperatorTruth(note, matches); }
    int Priority() const override { return kPriorityComparison; }
    double Compute(Node* note, MatchList& matches) const override;
    bool ComputeBoolean(Node* note, MatchList& matches) const override;
    double ComputeDate(Node* note, MatchList& matches) const override;
    std::string ComputeInterval(Node* note, MatchList& matches) const override;
    ActionResult ComputeActionResultForString(Node* note, MatchList& matches) const override;
    bool ComputeTruthForString(Node* note, MatchList& matches) const override;

protected:
    bool IsComparison() const override { return true; }
};

// `<=`: the negation of `>`, whatever the kinds.
class AALessEqual : public AAGreater {
public:
    using AAGreater::AAGreater;
    const char* ClassName() const override { return "AALessEqual"; }
    ActionResult Modify(const ActionResult& result) const override;
    bool Negates() const override { return true; }
};

// Prefix `-`: a boolean operand is negated as a truth value, a number,
// string or unsigned operand as a number; anything else is false.
class AANegate : public AAUnaryOperator {
public:
    using AAUnaryOperator::AAUnaryOperator;
    const char* ClassName() const override { return "AANegate"; }
    ActionResult ActionValue(Node* note, MatchList& matches) const override;
};

// Prefix `!` and `~`.
class AANot : public AAUnaryOperator {
public:
    using AAUnaryOperator::AAUnaryOperator;
    const char* ClassName() const override { return "AANot"; }
    int Priority() const override { return kPriorityNot; }
    ActionResult ActionValue(Node* note, MatchList& matches) const override;
    int ResultType(Node* note, MatchList& matches) const override;
};

// `( ... )`: the value and the type of what it holds.
class AAParenthetical : public AAUnaryOperator {
public:
    using AAUnaryOperator::AAUnaryOperator;
    const char* ClassName() const override { return "AAParenthetical"; }
    int ResultType(Node* note, MatchList& matches) const override;
    STime GetDate(Node* note, MatchList& matches) const override;
};

// `mod(a, b)`: integer remainder, 0 for a zero divisor.
class AAMod : public AANumFun {
public:
    using AANumFun::AANumFun;
    const char* ClassName() const override { return "AAMod"; }
    ActionResult ActionValue(Node* note, MatchList& matches) const override;
    int ResultType(Node* note, MatchList& matches) const override;
};

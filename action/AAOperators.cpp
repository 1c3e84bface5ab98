#include "AAOperators.h"

#include <cmath>
#include <limits>
#include <cstdlib>

#include "ArgList.h"
#include "AttributeType.h"
#include "MatchList.h"
#include "Node.h"
#include "NodeHelpers.h"
#include "Parser.h"
#include "STimeInterval.h"
#include "SetList.h"

namespace {

using Type = AttributeType;

bool IsNumberKind(int t) { return t == Type::kNumber || t == Type::kUnsigned; }
bool IsCollectionKind(int t) { return t == Type::kSet || t == Type::kList || t == Type::kDictionary; }

// Whether the text reads wholly as a number other than 0.
bool ReadsAsNonZeroNumber(const std::string& text) {
    std::string trimmed = Parser::Trim(text);
    if (trimmed.empty())
        return false;
    char* end = nullptr;
    double number = std::strtod(trimmed.c_str(), &end);
    return end && *end == '\0' && number != 0.0;
}

const ActionResult& TruthResult(bool truth) { return truth ? AAValue::kTrueResult() : AAValue::kFalseResult(); }

std::string TruthText(bool truth) { return truth ? AAValue::kTrue : AAValue::kFalse; }

double Seconds(const ActionResult& result) { return result.AsInterval().Seconds(); }

// The right side of an interval computation: an interval's seconds, or a
// plain number.
double IntervalOperand(const AAValue* operand, Node* note, MatchList& matches, const ActionResult& value) {
    if (operand && operand->ResultType(note, matches) == Type::kInterval)
        return Seconds(value);
    return value.AsDouble();
}

}  // namespace

// ---------------------------------------------------------------------------
// AABinaryOperator: choosing the computation

bool AABinaryOperator::IsValid(const Node* note) const {
    return left && right && left->IsValid(note) && right->IsValid(note);
}

int AABinaryOperator::ArgumentType(Node* note, MatchList& matches) const {
    if (!IsValid(note))
        return Type::kNone;
    int l = left->ResultType(note, matches);
    int r = right->ResultType(note, matches);
    const int none = Type::kNone;
    if (l == r && l != none)
        return l;
    if (l == Type::kBoolean)
        return l;
    if (l == none && r == Type::kBoolean)
        return Type::kBoolean;
    if (l == Type::kDate)
        return Type::kDate;
    if (IsCollectionKind(l))
        return l;
    if (IsNumberKind(l)) {
        if (IsNumberKind(r) || r == none)
            return l;
        if (r == Type::kBoolean || r == Type::kString || r == Type::kInterval)
            return r;
        return none;
    }
    if (IsNumberKind(r)) {
        if (l == none)
            return r;
        if (l == Type::kString || l == Type::kInterval)
            return l;
        return none;
    }
    if (l == Type::kInterval) {
        if (r == Type::kString)
            return l;
        return none;
    }
    if (l == Type::kString) {
        if (r == Type::kDate || r == Type::kBoolean)
            return Type::kString;
        if (IsCollectionKind(r) || r == Type::kInterval)
            return l;
    }
    if (l == none && r == none) {
        if (ReadsAsNonZeroNumber(AAValue::ComputeValue(left.get(), note, matches).AsString()))
            return Type::kNumber;
    }
    if (l == none)
        return r;
    if (r == none)
        return l;
    return none;
}

int AABinaryOperator::ResultType(Node* note, MatchList& matches) const {
    if (IsComparison())
        return Type::kBoolean;
    return ArgumentType(note, matches);
}

ActionResult AABinaryOperator::ActionValue(Node* note, MatchList& matches) const {
    return ResultFor(ArgumentType(note, matches), note, matches);
}

bool AABinaryOperator::OperatorTruth(Node* note, MatchList& matches) const {
    int kind = ArgumentType(note, matches);
    bool truth;
    switch (kind) {
    case Type::kNumber:
    case Type::kUnsigned:
        truth = Compute(note, matches) != 0.0;
        break;
    case Type::kString:
    case Type::kFile:
    case Type::kAction:
    case Type::kURL:
    case Type::kNone:
        truth = ComputeTruthForString(note, matches);
        break;
    case Type::kBoolean:
        truth = ComputeBoolean(note, matches);
        break;
    default:
        return ResultFor(kind, note, matches).IsTrue();
    }
    return Negates() ? !truth : truth;
}

ActionResult AABinaryOperator::ResultFor(int kind, Node* note, MatchList& matches) const {
    switch (kind) {
    case Type::kNumber:
    case Type::kUnsigned:
        return Modify(ActionResult(Compute(note, matches)));
    case Type::kString:
    case Type::kFile:
    case Type::kAction:
    case Type::kURL:
    case Type::kNone:
        return Modify(ComputeActionResultForString(note, matches));
    case Type::kColor:
        return Modify(ActionResult(ComputeColor(note, matches)));
    case Type::kInterval:
        return Modify(ActionResult(ComputeInterval(note, matches)));
    case Type::kBoolean:
        return Modify(TruthResult(ComputeBoolean(note, matches)));
    case Type::kDate: {
        double value = ComputeDate(note, matches);
        if (ResultType(note, matches) == Type::kBoolean)
            return Modify(TruthResult(value != 0.0));
        return Modify(ActionResult(value));
    }
    case Type::kSet:
        return Modify(ActionResult(ComputeSet(note, matches)));
    case Type::kList:
        return Modify(ActionResult(ComputeList(note, matches)));
    case Type::kDictionary:
        return Modify(ComputeDictionary(note, matches));
    default:
        return AAValue::kFalseResult();
    }
}

long AABinaryOperator::GetNum(Node* note, MatchList& matches) const {
    double value = Compute(note, matches);
    if (std::isnan(value))
        return 0;
    // Numbers past the range of a long (infinities among them) are held at
    // its ends rather than converted, which would be undefined.
    constexpr double kLimit = 9.2233720368547748e18;  // 2^63, the first double past LONG_MAX
    if (value >= kLimit)
        return std::numeric_limits<long>::max();
    if (value <= -kLimit)
        return std::numeric_limits<long>::min();
    return static_cast<long>(value);
}

double AABinaryOperator::Eval(const AAValue* operand, Node* note, MatchList& matches) const {
    if (!operand)
        return 0.0;
    double number = 0.0;
    if (AAValue::FastNumber(operand, note, matches, number))
        return number;
    ActionResult value = AAValue::ComputeValue(operand, note, matches);
    // A plain number has no date text; anything else is read as text first.
    if (value.isNumber && !value.hasString && !value.dictionary)
        return value.number;
    std::string text = Parser::TrimQuotes(value.AsString());
    if (STime::IsDate(text))
        return STime::For(text).DaysSince(STime::Never());
    return value.AsDouble();
}

std::string_view AABinaryOperator::EvalText(const AAValue* operand, Node* note, MatchList& matches,
                                            std::string& buffer) const {
    std::string_view text;
    if (AAValue::FastText(operand, note, matches, buffer, text))
        return text;
    buffer = AAValue::ComputeValue(operand, note, matches).AsString();
    return buffer;
}

bool AABinaryOperator::EvalBoolean(const AAValue* operand, Node* note, MatchList& matches) const {
    return AAValue::ComputeTruth(operand, note, matches);
}

std::string AABinaryOperator::ComputeColor(Node* note, MatchList& matches) const {
    if (!left || !right)
        return std::string();
    return AAValue::ComputeValue(left.get(), note, matches).AsString() + AAValue::ComputeValue(right.get(), note, matches).AsString();
}

std::string AABinaryOperator::ComputeInterval(Node* note, MatchList& matches) const {
    return AABinaryOperator::ComputeColor(note, matches);
}

ActionResult AABinaryOperator::ComputeDictionary(Node*, MatchList&) const { return ActionResult(std::string()); }

ActionResult AABinaryOperator::ComputeActionResultForString(Node* note, MatchList& matches) const {
    return ActionResult(AAValue::ComputeValue(left.get(), note, matches).AsString() +
                        AAValue::ComputeValue(right.get(), note, matches).AsString());
}

void AABinaryOperator::ExpandAttributedStrings(Node* note, ActionResult& l, ActionResult& r) const {
    bool leftRich = l.AttributedString() != nullptr;
    bool rightRich = r.AttributedString() != nullptr;
    if (leftRich == rightRich)
        return;
    // The note's own text style: empty fields stand for the note's font,
    // size and colour.
    ActionResult& plain = leftRich ? r : l;
    plain.AttributedString(std::make_shared<StyledText>(plain.AsString(), TextStyle{}));
}

// ---------------------------------------------------------------------------
// + and -

double AAPlus::Compute(Node* note, MatchList& matches) const {
    return Eval(left.get(), note, matches) + Eval(right.get(), note, matches);
}

bool AAPlus::ComputeBoolean(Node* note, MatchList& matches) const {
    return EvalBoolean(left.get(), note, matches) || EvalBoolean(right.get(), note, matches);
}

double AAPlus::ComputeDate(Node* note, MatchList& matches) const {
    STime base = left ? left->GetDate(note, matches) : STime::Now();
    if (!right)
        return base.SecondsSince1970();
    ActionResult value = AAValue::ComputeValue(right.get(), note, matches);
    if (right->ResultType(note, matches) == Type::kInterval)
        return base.AddSeconds(Seconds(value)).SecondsSince1970();
    return base.Add(value.AsString()).SecondsSince1970();
}

std::string AAPlus::ComputeSet(Node* note, MatchList& matches) const {
    SetList set = AAValue::ComputeValue(left.get(), note, matches).AsSet();
    set.Add(AAValue::ComputeValue(right.get(), note, matches).AsString(), ';');
    return set.ToString(";");
}

std::string AAPlus::ComputeList(Node* note, MatchList& matches) const {
    ArgList list = AAValue::ComputeValue(left.get(), note, matches).AsList();
    list.Add(AAValue::ComputeValue(right.get(), note, matches).AsString(), ';');
    return list.ToString(";");
}

std::string AAPlus::ComputeInterval(Node* note, MatchList& matches) const {
    ActionResult l = AAValue::ComputeValue(left.get(), note, matches);
    ActionResult r = AAValue::ComputeValue(right.get(), note, matches);
    return STimeInterval(Seconds(l) + IntervalOperand(right.get(), note, matches, r)).ToString();
}

ActionResult AAPlus::ComputeDictionary(Node* note, MatchList& matches) const {
    SharedDictionary base = AAValue::ComputeValue(left.get(), note, matches).AsDictionary();
    Dictionary merged = base ? *base : Dictionary();
    ActionResult r = AAValue::ComputeValue(right.get(), note, matches);
    if (SharedDictionary more = r.AsDictionary()) {
        for (const auto& [key, value] : *more)
            merged[key] = value;
    }
    return ActionResult::ForDictionary(merged);
}

ActionResult AAPlus::ComputeActionResultForString(Node* note, MatchList& matches) const {
    ActionResult l = AAValue::ComputeValue(left.get(), note, matches);
    ActionResult r = AAValue::ComputeValue(right.get(), note, matches);
    ExpandAttributedStrings(note, l, r);
    ActionResult joined(l.AsString() + r.AsString());
    if (l.AttributedString() && r.AttributedString()) {
        auto rich = std::make_shared<StyledText>(*l.AttributedString());
        rich->Append(*r.AttributedString());
        joined.AttributedString(rich);
    }
    return joined;
}

int AAMinus::ArgumentType(Node* note, MatchList& matches) const {
    if (IsValid(note) && left->ResultType(note, matches) == Type::kDate &&
        right->ResultType(note, matches) == Type::kDate)
        return Type::kNumber;
    return AABinaryOperator::ArgumentType(note, matches);
}

double AAMinus::Compute(Node* note, MatchList& matches) const {
    return Eval(left.get(), note, matches) - Eval(right.get(), note, matches);
}

double AAMinus::ComputeDate(Node* note, MatchList& matches) const {
    int kind = ArgumentType(note, matches);
    if (IsNumberKind(kind))
        return std::round(Compute(note, matches));
    if (!left || !right)
        return 0.0;
    STime base = left->GetDate(note, matches);
    ActionResult r = AAValue::ComputeValue(right.get(), note, matches);
    if (right->ResultType(note, matches) == Type::kInterval)
        return base.SecondsSince1970() - Seconds(r);
    std::string text = r.AsString();
    if (STime::CanBeDate(text))
        return std::round(Compute(note, matches));
    return base.Add("-" + text).SecondsSince1970();
}

std::string AAMinus::ComputeSet(Node* note, MatchList& matches) const {
    SetList set = AAValue::ComputeValue(left.get(), note, matches).AsSet();
    set.Remove(AAValue::ComputeValue(right.get(), note, matches).AsString(), ';');
    return set.ToString(";");
}

std::string AAMinus::ComputeList(Node* note, MatchList& matches) const {
    ArgList list = AAValue::ComputeValue(left.get(), note, matches).AsList();
    ArgList removed = AAValue::ComputeValue(right.get(), note, matches).AsList();
    for (const std::string& item : removed.GetList())
        list.RemoveOne(item);
    return list.ToString(";");
}

std::string AAMinus::ComputeInterval(Node* note, MatchList& matches) const {
    ActionResult l = AAValue::ComputeValue(left.get(), note, matches);
    ActionResult r = AAValue::ComputeValue(right.get(), note, matches);
    return STimeInterval(Seconds(l) - IntervalOperand(right.get(), note, matches, r)).ToString();
}

ActionResult AAMinus::ComputeDictionary(Node* note, MatchList& matches) const {
    SharedDictionary base = AAValue::ComputeValue(left.get(), note, matches).AsDictionary();
    Dictionary copy = base ? *base : Dictionary();
    copy.erase(AAValue::ComputeValue(right.get(), note, matches).AsString());
    return ActionResult::ForDictionary(copy);
}

ActionResult AAMinus::ComputeActionResultForString(Node* note, MatchList& matches) const {
    return ActionResult(AAValue::ComputeValue(left.get(), note, matches).AsString() + "-" +
                        AAValue::ComputeValue(right.get(), note, matches).AsString());
}

// ---------------------------------------------------------------------------
// * and /

double AAMultiply::Compute(Node* note, MatchList& matches) const {
    return Eval(left.get(), note, matches) * Eval(right.get(), note, matches);
}

std::string AAMultiply::ComputeInterval(Node* note, MatchList& matches) const {
    ActionResult l = AAValue::ComputeValue(left.get(), note, matches);
    ActionResult r = AAValue::ComputeValue(right.get(), note, matches);
    return STimeInterval(Seconds(l) * IntervalOperand(right.get(), note, matches, r)).ToString();
}

ActionResult AAMultiply::ComputeActionResultForString(Node* note, MatchList& matches) const {
    ActionResult l = AAValue::ComputeValue(left.get(), note, matches);
    ActionResult r = AAValue::ComputeValue(right.get(), note, matches);
    std::string leftText = l.AsString();
    std::string rightText = r.AsString();
    if (leftText.empty())
        return r;
    if (rightText.empty())
        return l;
    long count = l.AsNumber();
    std::string text = rightText;
    if (count == 0) {
        count = r.AsNumber();
        text = leftText;
    }
    if (count < 0)
        return ActionResult(std::string());
    if (count == 0)
        return ActionResult(leftText + rightText);
    // A runaway count would fill memory; the repetition stops at a size no
    // note text reaches.
    constexpr size_t kMaxRepeatedBytes = 64u << 20;
    std::string repeated;
    for (long i = 0; i < count && repeated.size() + text.size() <= kMaxRepeatedBytes; ++i)
        repeated += text;
    return ActionResult(repeated);
}

double AADivide::Compute(Node* note, MatchList& matches) const {
    return Eval(left.get(), note, matches) / Eval(right.get(), note, matches);
}

std::string AADivide::ComputeInterval(Node* note, MatchList& matches) const {
    ActionResult l = AAValue::ComputeValue(left.get(), note, matches);
    ActionResult r = AAValue::ComputeValue(right.get(), note, matches);
    return STimeInterval(Seconds(l) / IntervalOperand(right.get(), note, matches, r)).ToString();
}

ActionResult AADivide::ComputeActionResultForString(Node* note, MatchList& matches) const {
    if (!left)
        return AAValue::ComputeValue(right.get(), note, matches);
    if (!right)
        return AAValue::ComputeValue(left.get(), note, matches);
    return ActionResult(AAValue::ComputeValue(left.get(), note, matches).AsString() + "/" +
                        AAValue::ComputeValue(right.get(), note, matches).AsString());
}

// ---------------------------------------------------------------------------
// | and &

double AAOr::Compute(Node* note, MatchList& matches) const {
    if (Eval(left.get(), note, matches) != 0.0)
        return 1.0;
    return Eval(right.get(), note, matches) != 0.0 ? 1.0 : 0.0;
}

bool AAOr::ComputeBoolean(Node* note, MatchList& matches) const {
    return EvalBoolean(left.get(), note, matches) || EvalBoolean(right.get(), note, matches);
}

double AAOr::ComputeDate(Node* note, MatchList& matches) const { return ComputeBoolean(note, matches) ? 1.0 : 0.0; }

std::string AAOr::ComputeSet(Node* note, MatchList& matches) const {
    return ComputeActionResultForString(note, matches).AsString();
}

std::string AAOr::ComputeList(Node* note, MatchList& matches) const {
    return ComputeActionResultForString(note, matches).AsString();
}

ActionResult AAOr::ComputeActionResultForString(Node* note, MatchList& matches) const {
    ActionResult l = AAValue::ComputeValue(left.get(), note, matches);
    if (l.IsTrue())
        return l;
    return AAValue::ComputeValue(right.get(), note, matches);
}

double AAAnd::Compute(Node* note, MatchList& matches) const {
    if (Eval(left.get(), note, matches) == 0.0)
        return 0.0;
    return Eval(right.get(), note, matches) != 0.0 ? 1.0 : 0.0;
}

bool AAAnd::ComputeBoolean(Node* note, MatchList& matches) const {
    return EvalBoolean(left.get(), note, matches) && EvalBoolean(right.get(), note, matches);
}

double AAAnd::ComputeDate(Node* note, MatchList& matches) const { return ComputeBoolean(note, matches) ? 1.0 : 0.0; }

std::string AAAnd::ComputeSet(Node* note, MatchList& matches) const {
    return ComputeActionResultForString(note, matches).AsString();
}

std::string AAAnd::ComputeList(Node* note, MatchList& matches) const {
    return ComputeActionResultForString(note, matches).AsString();
}

ActionResult AAAnd::ComputeActionResultForString(Node* note, MatchList& matches) const {
    if (AAValue::ComputeValue(left.get(), note, matches).IsFalse())
        return AAValue::kFalseResult();
    return TruthResult(AAValue::ComputeValue(right.get(), note, matches).IsTrue());
}

// ---------------------------------------------------------------------------
// Comparisons

double AAEqual::Compute(Node* note, MatchList& matches) const {
    return Eval(left.get(), note, matches) == Eval(right.get(), note, matches) ? 1.0 : 0.0;
}

bool AAEqual::ComputeBoolean(Node* note, MatchList& matches) const {
    return EvalBoolean(left.get(), note, matches) == EvalBoolean(right.get(), note, matches);
}

double AAEqual::ComputeDate(Node* note, MatchList& matches) const {
    if (!left || !right)
        return 0.0;
    return left->GetDate(note, matches).SameDayAs(right->GetDate(note, matches)) ? 1.0 : 0.0;
}

std::string AAEqual::ComputeSet(Node* note, MatchList& matches) const {
    SetList l = AAValue::ComputeValue(left.get(), note, matches).AsSet();
    SetList r = AAValue::ComputeValue(right.get(), note, matches).AsSet();
    if (l.size() != r.size())
        return TruthText(false);
    for (const std::string& item : r)
        if (!l.Has(item))
            return TruthText(false);
    return TruthText(true);
}

std::string AAEqual::ComputeList(Node* note, MatchList& matches) const {
    std::string l, r;
    std::string_view leftText = EvalText(left.get(), note, matches, l);
    return TruthText(leftText == EvalText(right.get(), note, matches, r));
}

std::string AAEqual::ComputeColor(Node* note, MatchList& matches) const {
    ActionResult l = AAValue::ComputeValue(left.get(), note, matches);
    ActionResult r = AAValue::ComputeValue(right.get(), note, matches);
    if (l.AsString() == r.AsString())
        return TruthText(true);
    if (!note)
        return TruthText(false);
    return TruthText(l.AsColor(note) == r.AsColor(note));
}

std::string AAEqual::ComputeInterval(Node* note, MatchList& matches) const {
    ActionResult l = AAValue::ComputeValue(left.get(), note, matches);
    ActionResult r = AAValue::ComputeValue(right.get(), note, matches);
    return TruthText(l.AsInterval() == r.AsInterval());
}

ActionResult AAEqual::ComputeActionResultForString(Node* note, MatchList& matches) const {
    std::string l, r;
    std::string_view leftText = EvalText(left.get(), note, matches, l);
    return TruthResult(leftText == EvalText(right.get(), note, matches, r));
}

bool AAEqual::ComputeTruthForString(Node* note, MatchList& matches) const {
    std::string l, r;
    std::string_view leftText = EvalText(left.get(), note, matches, l);
    return leftText == EvalText(right.get(), note, matches, r);
}

ActionResult AANotEqual::Modify(const ActionResult& result) const { return TruthResult(!result.IsTrue()); }

double AALess::Compute(Node* note, MatchList& matches) const {
    return Eval(left.get(), note, matches) < Eval(right.get(), note, matches) ? 1.0 : 0.0;
}

bool AALess::ComputeBoolean(Node* note, MatchList& matches) const {
    return ComputeActionResultForString(note, matches).IsTrue();
}

double AALess::ComputeDate(Node* note, MatchList& matches) const {
    if (!left || !right)
        return 0.0;
    STime l = left->GetDate(note, matches);
    if (l.IsNever())
        return 0.0;
    return l.SecondsSince1970() < right->GetDate(note, matches).SecondsSince1970() ? 1.0 : 0.0;
}

std::string AALess::ComputeInterval(Node* note, MatchList& matches) const {
    ActionResult l = AAValue::ComputeValue(left.get(), note, matches);
    ActionResult r = AAValue::ComputeValue(right.get(), note, matches);
    return TruthText(Seconds(l) < Seconds(r));
}

ActionResult AALess::ComputeActionResultForString(Node* note, MatchList& matches) const {
    std::string l, r;
    std::string_view leftText = EvalText(left.get(), note, matches, l);
    return TruthResult(leftText < EvalText(right.get(), note, matches, r));
}

bool AALess::ComputeTruthForString(Node* note, MatchList& matches) const {
    std::string l, r;
    std::string_view leftText = EvalText(left.get(), note, matches, l);
    return leftText < EvalText(right.get(), note, matches, r);
}

ActionResult AAGreaterEqual::Modify(const ActionResult& result) const { return TruthResult(!result.IsTrue()); }

double AAGreater::Compute(Node* note, MatchList& matches) const {
    return Eval(left.get(), note, matches) > Eval(right.get(), note, matches) ? 1.0 : 0.0;
}

bool AAGreater::ComputeBoolean(Node* note, MatchList& matches) const {
    return ComputeActionResultForString(note, matches).IsTrue();
}

double AAGreater::ComputeDate(Node* note, MatchList& matches) const {
    if (!left || !right)
        return 0.0;
    STime l = left->GetDate(note, matches);
    if (l.IsNever())
        return 1.0;
    return l.SecondsSince1970() > right->GetDate(note, matches).SecondsSince1970() ? 1.0 : 0.0;
}

std::string AAGreater::ComputeInterval(Node* note, MatchList& matches) const {
    ActionResult l = AAValue::ComputeValue(left.get(), note, matches);
    ActionResult r = AAValue::ComputeValue(right.get(), note, matches);
    return TruthText(Seconds(l) > Seconds(r));
}

ActionResult AAGreater::ComputeActionResultForString(Node* note, MatchList& matches) const {
    std::string l, r;
    std::string_view leftText = EvalText(left.get(), note, matches, l);
    return TruthResult(leftText > EvalText(right.get(), note, matches, r));
}

bool AAGreater::ComputeTruthForString(Node* note, MatchList& matches) const {
    std::string l, r;
    std::string_view leftText = EvalText(left.get(), note, matches, l);
    return leftText > EvalText(right.get(), note, matches, r);
}

ActionResult AALessEqual::Modify(const ActionResult& result) const { return TruthResult(!result.IsTrue()); }

// ---------------------------------------------------------------------------
// Prefix operators, parentheses, mod

ActionResult AANegate::ActionValue(Node* note, MatchList& matches) const {
    if (!operand)
        return kFalseResult();
    int kind = operand->ResultType(note, matches);
    ActionResult value = ComputeValue(operand.get(), note, matches);
    if (kind == Type::kBoolean)
        return value.IsFalse() ? kTrueResult() : kFalseResult();
    if (kind == Type::kNumber || kind == Type::kString || kind == Type::kUnsigned)
        return ActionResult(-value.AsDouble());
    return kFalseResult();
}

ActionResult AANot::ActionValue(Node* note, MatchList& matches) const {
    return ComputeValue(operand.get(), note, matches).IsTrue() ? kFalseResult() : kTrueResult();
}

int AANot::ResultType(Node*, MatchList&) const { return Type::kBoolean; }

int AAParenthetical::ResultType(Node* note, MatchList& matches) const {
    return operand ? operand->ResultType(note, matches) : Type::kNone;
}

STime AAParenthetical::GetDate(Node* note, MatchList& matches) const {
    return operand ? operand->GetDate(note, matches) : STime::Never();
}

ActionResult AAMod::ActionValue(Node* note, MatchList& matches) const {
    const AAValue* first = operand.get();
    const AAValue* second = first ? first->GetNextArgument() : nullptr;
    long l = first ? first->GetNum(note, matches) : 0;
    long r = second ? second->GetNum(note, matches) : 0;
    // A remainder by 0 is 0; by -1 it is 0 too, and computing it would
    // overflow for the smallest long.
    if (r == 0 || r == -1)
        return ActionResult(0.0);
    return ActionResult(static_cast<double>(l - (l / r) * r));
}

int AAMod::ResultType(Node*, MatchList&) const { return Type::kNumber; }

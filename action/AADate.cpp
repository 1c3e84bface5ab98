#include "AADate.h"

#include <cmath>
#include <cstdio>

#include "AAArguments.h"
#include "AttributeType.h"
#include "MatchList.h"
#include "STimeInterval.h"

using Type = AttributeType;

namespace {

// Calendar fields past this are no date anyone writes; the bound keeps the
// conversion to an integer defined for any number a document holds.
constexpr double kLargestField = 100000000.0;

// An argument as a whole number, truncated; 0 for a missing or unreadable one.
long ArgumentLong(const AAValue* value, Node* note, MatchList& matches) {
    if (!value)
        return 0;
    double number = AAValue::ComputeValue(value, note, matches).AsDouble();
    if (std::isnan(number))
        return 0;
    if (number > kLargestField)
        number = kLargestField;
    if (number < -kLargestField)
        number = -kLargestField;
    return static_cast<long>(number);
}

// The first argument, or null for `f()`: empty parentheses give one empty
// argument, which is no argument at all.
const AAValue* Given(const AAValue* first) {
    if (first && !first->GetNextArgument() && dynamic_cast<const AADefaultValue*>(first))
        return nullptr;
    return first;
}

STime ArgumentDate(const AAValue* value, Node* note, MatchList& matches) {
    return value ? value->GetDate(note, matches) : STime::Never();
}

}  // namespace

// ---------------------------------------------------------------------------
// Making dates

bool AADate::Make(Node* note, MatchList& matches, STime& date, bool& fromParts) const {
    const AAValue* first = Given(operand.get());
    int count = CountArguments(first);
    fromParts = count >= 3;
    if (count == 0)
        return false;
    if (!fromParts) {
        date = ArgumentDate(first, note, matches);
        return true;
    }
    long year = ArgumentLong(first, note, matches);
    long month = ArgumentLong(NthArgument(first, 1), note, matches);
    long day = ArgumentLong(NthArgument(first, 2), note, matches);
    date = STime(static_cast<int>(month), static_cast<int>(day), static_cast<int>(year));
    if (count >= 5) {
        long hour = ArgumentLong(NthArgument(first, 3), note, matches);
        long minute = ArgumentLong(NthArgument(first, 4), note, matches);
        date = date.SetTime(hour, minute);
    }
    return true;
}

ActionResult AADate::ActionValue(Node* note, MatchList& matches) const {
    STime date = STime::Never();
    bool fromParts = false;
    if (!Make(note, matches, date, fromParts))
        return ActionResult(std::string());
    return ActionResult(fromParts ? date.ISO8601DateString() : date.AsString());
}

STime AADate::GetDate(Node* note, MatchList& matches) const {
    STime date = STime::Never();
    bool fromParts = false;
    return Make(note, matches, date, fromParts) ? date : STime::Never();
}

int AADate::ResultType(Node*, MatchList&) const { return Type::kDate; }

STime AATime::WithTime(Node* note, MatchList& matches) const {
    const AAValue* first = Given(operand.get());
    STime date = ArgumentDate(first, note, matches);
    const AAValue* second = NthArgument(first, 1);
    const AAValue* third = NthArgument(first, 2);
    if (!second)
        return date;
    if (!third)
        return date.SetTime(ArgumentText(second, note, matches));
    return date.SetTime(ArgumentLong(second, note, matches), ArgumentLong(third, note, matches));
}

ActionResult AATime::ActionValue(Node* note, MatchList& matches) const {
    const AAValue* first = Given(operand.get());
    if (!first)
        return ActionResult(std::string());
    if (first->GetNextArgument())
        return ActionResult(WithTime(note, matches).AsString());
    STime date = ArgumentDate(first, note, matches);
    char text[64];
    std::snprintf(text, sizeof text, "%d:%02d", date.Hour(), date.Minute());
    return ActionResult(std::string(text));
}

STime AATime::GetDate(Node* note, MatchList& matches) const {
    if (!operand || !operand->GetNextArgument())
        return AAFunction::GetDate(note, matches);
    return WithTime(note, matches);
}

int AATime::ResultType(Node*, MatchList&) const {
    return operand && operand->GetNextArgument() ? Type::kDate : Type::kString;
}

ActionResult AAInterval::ActionValue(Node* note, MatchList& matches) const {
    const AAValue* first = Given(operand.get());
    const AAValue* second = NthArgument(first, 1);
    if (!first || !second)
        return ActionResult(std::string());
    STime from = ArgumentDate(first, note, matches);
    STime to = ArgumentDate(second, note, matches);
    return ActionResult(STimeInterval(to.SecondsSince(from)).ToString());
}

int AAInterval::ResultType(Node*, MatchList&) const { return Type::kInterval; }

// ---------------------------------------------------------------------------
// Parts of a date

ActionResult AADatePart::ActionValue(Node* note, MatchList& matches) const {
    const AAValue* first = Given(operand.get());
    if (!first)
        return ActionResult(std::string());
    if (Sets() && first->GetNextArgument())
        return ActionResult(SetDate(note, matches).AsString());
    if (ReadsIntervals() && first->ResultType(note, matches) == Type::kInterval)
        return ActionResult(static_cast<double>(ReadInterval(ComputeValue(first, note, matches).AsInterval())));
    return ActionResult(static_cast<double>(Read(first->GetDate(note, matches))));
}

STime AADatePart::SetDate(Node* note, MatchList& matches) const {
    const AAValue* first = Given(operand.get());
    STime date = ArgumentDate(first, note, matches);
    return Replace(date, ArgumentLong(NthArgument(first, 1), note, matches));
}

STime AADatePart::GetDate(Node* note, MatchList& matches) const {
    if (Sets() && operand && operand->GetNextArgument())
        return SetDate(note, matches);
    return AAFunction::GetDate(note, matches);
}

int AADatePart::ResultType(Node*, MatchList&) const {
    return Sets() && operand && operand->GetNextArgument() ? Type::kDate : Type::kNumber;
}

long AADay::Read(const STime& date) const { return date.Day(); }
long AADay::ReadInterval(const STimeInterval& interval) const { return interval.AsDays(); }
STime AADay::Replace(const STime& date, long value) const { return date.ForDay(value); }

long AAHour::Read(const STime& date) const { return date.Hour(); }
long AAHour::ReadInterval(const STimeInterval& interval) const { return interval.AsHours(); }
STime AAHour::Replace(const STime& date, long value) const { return date.SetTime(value, date.Minute()); }

long AAMinute::Read(const STime& date) const { return date.Minute(); }
long AAMinute::ReadInterval(const STimeInterval& interval) const { return interval.AsMinutes(); }
STime AAMinute::Replace(const STime& date, long value) const { return date.SetTime(date.Hour(), value); }

long AASecond::Read(const STime& date) const { return date.Second(); }
long AASecond::ReadInterval(const STimeInterval& interval) const { return interval.AsSeconds(); }
STime AASecond::Replace(const STime& date, long value) const {
    return date.SetTime(date.Hour(), date.Minute(), value);
}

long AAMonth::Read(const STime& date) const { return date.Month(); }
STime AAMonth::Replace(const STime& date, long value) const { return date.ForMonth(value); }

long AAYear::Read(const STime& date) const { return date.Year(); }
STime AAYear::Replace(const STime& date, long value) const { return date.ForYear(value); }

long AAWeekOfYear::Read(const STime& date) const { return date.WeekOfYear(); }

long AAWeekday::Read(const STime& date) const { return date.DayOfWeek(); }

// ---------------------------------------------------------------------------
// Differences

ActionResult AADays::ActionValue(Node* note, MatchList& matches) const {
    const AAValue* first = Given(operand.get());
    const AAValue* second = NthArgument(first, 1);
    if (!first || !second)
        return kFalseResult();
    STime from = ArgumentDate(first, note, matches);
    STime to = ArgumentDate(second, note, matches);
    return ActionResult(Difference(from, to));
}

int AADays::ResultType(Node*, MatchList&) const { return Type::kNumber; }

double AADays::Difference(const STime& from, const STime& to) const { return to.DaysSince(from); }
double AAHours::Difference(const STime& from, const STime& to) const { return to.HoursSince(from); }
double AAMinutes::Difference(const STime& from, const STime& to) const { return to.MinutesSince(from); }
double AASeconds::Difference(const STime& from, const STime& to) const { return to.SecondsSince(from); }
double AAWeeks::Difference(const STime& from, const STime& to) const { return to.WeeksSince(from); }
double AAMonths::Difference(const STime& from, const STime& to) const { return to.MonthsSince(from); }
double AAYears::Difference(const STime& from, const STime& to) const { return to.YearsSince(from); }

// The parts of the values layer that deal in dates: date and interval values,
// their factories, and the date readings of lists and results.
#include <cmath>
#include <limits>
#include <mutex>

#include "ActionResult.h"
#include "ArgList.h"
#include "DateValue.h"
#include "Log.h"
#include "Parser.h"
#include "RylSerial.h"

namespace {

int CompareDoubles(double a, double b) {
    if (a < b) return -1;
    if (a > b) return 1;
    return 0;
}

long Truncate(double x) {
    if (std::isnan(x)) return 0;
    if (x >= static_cast<double>(std::numeric_limits<long>::max())) return std::numeric_limits<long>::max();
    if (x <= static_cast<double>(std::numeric_limits<long>::min())) return std::numeric_limits<long>::min();
    return static_cast<long>(x);
}

DateValue* SharedNever() {
    // Lives for the run of the program; its count starts with the program's
    // own reference, so balanced Clone/Delete pairs never destroy it.
    static DateValue* never = new DateValue(STime::Never());
    return never;
}

// Date expressions may name further expressions ("(\"(...)\")"); a nesting
// deeper than this resolves to never.
constexpr int kMaxExpressionDepth = 64;
thread_local int expressionDepth = 0;

}  // namespace

// ---------------------------------------------------------------- DateValue

namespace {

const char* CopyText(const std::string& text) {
    char* block = new char[text.size() + 1];
    text.copy(block, text.size());
    block[text.size()] = '\0';
    return block;
}

// Stands in `written` for a text that is exactly time.UniversalText(): dates
// read from a file are mostly written so, and need not keep their text.
const char* const kUniversalText = "";

// The written form is always the instant's ISO 8601 text: a date typed as
// "tomorrow" must not be written as "tomorrow", or it would mean another day
// each time it is read. Only the universal form is kept from the given text,
// as a stand-in that saves formatting it again; any other text is dropped and
// the ISO 8601 text made when first asked for.
const char* KeptText(const STime& time, const std::string& text) {
    if (text.size() == 20 && text.back() == 'Z' && time.UniversalText() == text) return kUniversalText;
    return nullptr;
}

// Serialises only the moment an expression's time is stored.
std::mutex& ResolveLock() {
    static std::mutex lock;
    return lock;
}

}  // namespace

DateValue::DateValue(const STime& t) : time(t) {}

DateValue::DateValue(const STime& t, const std::string& text) : time(t), written(KeptText(t, text)) {}

DateValue::~DateValue() {
    const char* text = written.load(std::memory_order_acquire);
    if (text != kUniversalText) delete[] text;
}

DateValue* DateValue::ForExpression(const std::string& expression) {
    DateValue* value = new DateValue(STime::Never());
    // An empty expression is simply never.
    if (!expression.empty()) {
        value->held = std::make_unique<Held>();
        value->held->text = expression;
    }
    return value;
}

Value* DateValue::Clone() const {
    count.fetch_add(1, std::memory_order_relaxed);
    return const_cast<DateValue*>(this);
}

void DateValue::Delete() const {
    if (count.fetch_sub(1, std::memory_order_acq_rel) <= 1) Value::Delete();
}

long DateValue::Count() const {
    return count.load(std::memory_order_acquire);
}

const std::string& DateValue::Expression() const {
    static const std::string none;
    return held ? held->text : none;
}

void DateValue::Resolve() const {
    if (Resolved()) return;
    // The expression is evaluated outside the lock: it may hold further
    // expressions. Two threads may both evaluate it; the first to store wins.
    STime resolvedTime = STime::Never();
    if (expressionDepth < kMaxExpressionDepth) {
        ++expressionDepth;
        Value* temporary = Value::ForDate(held->text);
        resolvedTime = temporary->AsTime();
        temporary->Delete();
        --expressionDepth;
    }
    std::lock_guard<std::mutex> hold(ResolveLock());
    if (!held->resolved.load(std::memory_order_relaxed)) {
        time = resolvedTime;
        held->resolved.store(true, std::memory_order_release);
    }
}

const char* DateValue::WrittenText() const {
    if (const char* text = written.load(std::memory_order_acquire)) return text;
    Resolve();
    const char* made = CopyText(time.IsNever() ? std::string("never") : time.ISO8601DateString());
    const char* expected = nullptr;
    if (written.compare_exchange_strong(expected, made, std::memory_order_acq_rel)) return made;
    delete[] made;
    return expected;
}

std::string DateValue::Written() const {
    const char* text = WrittenText();
    if (text == kUniversalText) {
        // In another zone the ISO 8601 text carries that zone's offset.
        if (STime::LocalZoneIsUniversal()) return time.UniversalText();
        return time.ISO8601DateString();
    }
    return text;
}

std::string DateValue::AsString() const {
    if (held) return "\"" + held->text + "\"";
    return Written();
}

std::string DateValue::AsFormattedString(const std::string& format) const {
    if (held) return "\"" + held->text + "\"";
    Resolve();
    return time.AsExportString(format);
}

std::string DateValue::AsXML() const {
    return Written();
}

std::string DateValue::AsShortString() const {
    Resolve();
    return time.AsShortString();
}

std::string DateValue::AsExportString(const std::string& format, Hypertext*) const {
    Resolve();
    return time.AsExportString(format);
}

long DateValue::AsLong() const {
    Resolve();
    return Truncate(time.SecondsSince1970());
}

double DateValue::AsDouble() const {
    // Deliberately without Resolve: an unresolved expression reads as never.
    if (!Resolved()) return STime::Never().SecondsSince1970();
    return time.SecondsSince1970();
}

STime DateValue::AsTime() const {
    Resolve();
    return time;
}

int DateValue::compare(const Value* other) const {
    STime mine = AsTime();
    STime theirs = other ? other->AsTime() : STime::Never();
    if (mine == theirs) return 0;
    if (theirs.IsNever()) return -1;
    if (mine.IsNever()) return 1;
    return mine < theirs ? -1 : 1;
}

bool DateValue::equal(const Value* other) const {
    STime theirs = other ? other->AsTime() : STime::Never();
    return AsTime().SameDayAs(theirs);
}

// ---------------------------------------------------------------- IntervalValue

IntervalValue::IntervalValue(const STimeInterval& i) : interval(i) {}

Value* IntervalValue::Clone() const {
    return new IntervalValue(interval);
}

std::string IntervalValue::AsString() const {
    return interval.ToString();
}

std::string IntervalValue::AsXML() const {
    return interval.ToString();
}

long IntervalValue::AsLong() const {
    double s = interval.Seconds();
    return std::isfinite(s) ? Truncate(std::round(s)) : 0;
}

double IntervalValue::AsDouble() const {
    return interval.Seconds();
}

int IntervalValue::compare(const Value* other) const {
    return CompareDoubles(interval.Seconds(), other ? other->AsDouble() : 0.0);
}

// ---------------------------------------------------------------- Value

STime Value::AsTime() const {
    return STime::Never();
}

Value* Value::Never() {
    return SharedNever()->Clone();
}

Value* Value::ForDate(const std::string& text) {
    if (text.empty() || text == "never" || text == "0") return Never();
    size_t firstQuote = text.find('"');
    if (firstQuote != std::string::npos) {
        // From behind the first quote, (position of the last quote - 1) long.
        long lastQuote = static_cast<long>(text.rfind('"'));
        size_t length = lastQuote - 1 < 0 ? std::string::npos : static_cast<size_t>(lastQuote - 1);
        return DateValue::ForExpression(text.substr(firstQuote + 1, length));
    }
    if (text.front() == '(' && text.back() == ')' && text.size() >= 2)
        return DateValue::ForExpression(text.substr(1, text.size() - 2));
    STime time = STime::For(text);
    if (time.IsNever()) return Never();
    if (text.find('+') == std::string::npos && text.find(' ') == std::string::npos)
        return new DateValue(time, text);
    return new DateValue(time);
}

Value* Value::ForDate(const STime& time) {
    if (time.IsNever()) return Never();
    return new DateValue(time);
}

Value* Value::ForDate(const STime& time, const std::string& text) {
    if (time.IsNever()) return Never();
    return new DateValue(time, text);
}

Value* Value::ForToday() {
    return ForDate(STime::Now());
}

Value* Value::ForInterval(const std::string& text) {
    return new IntervalValue(STimeInterval(text));
}

STime Value::AddTime(const STime& time, const std::string& interval) {
    return time.Add(interval);
}

// ---------------------------------------------------------------- lists and results

STime ActionResult::AsDate() const {
    return STime::For(AsString());
}

STimeInterval ActionResult::AsInterval() const {
    return STimeInterval(AsString());
}

bool ArgList::IsDate() const {
    for (const std::string& raw : items) {
        std::string item = Parser::Trim(raw);
        if (item == "never" || item == "0") continue;
        if (item.find(':') == std::string::npos) return false;
        STime time = STime::For(item);
        if (time.IsNever() || time.SecondsSince1970() == 0.0) return false;
    }
    return true;
}

#include <cstdio>
#include <cmath>
#include <limits>
#include <sstream>

#include "RylSerial.h"
#include "Value.h"

#include <charconv>

namespace {

int CompareDoubles(double a, double b) {
    if (a < b) return -1;
    if (a > b) return 1;
    return 0;  // equal, or a NaN on either side
}

// Rounds half up by truncating x + 0.5, clamped to the range of long so that
// huge values and NaN stay defined.
long TruncateHalfUp(double x) {
    double r = x + 0.5;
    if (std::isnan(r)) return 0;
    if (r >= static_cast<double>(std::numeric_limits<long>::max())) return std::numeric_limits<long>::max();
    if (r <= static_cast<double>(std::numeric_limits<long>::min())) return std::numeric_limits<long>::min();
    return static_cast<long>(r);
}

// Reads the tagged form "Tag[ value ]": the word, then one value.
template <typename T>
T ReadTagged(const std::string& text) {
    std::istringstream in(text);
    std::string word;
    T value{};
    in >> word >> value;
    return value;
}

}  // namespace

// ---------------------------------------------------------------- LongValue

LongValue::LongValue(int32_t number) : value(number) {}

LongValue::LongValue(const std::string& tagged) : value(ReadTagged<int32_t>(tagged)) {}

Value* LongValue::Clone() const {
    return new LongValue(value);
}

std::string LongValue::AsString() const {
    return std::to_string(value);
}

std::string LongValue::AsXML() const {
    return std::to_string(value);
}

long LongValue::AsLong() const {
    return value;
}

unsigned long LongValue::AsUnsignedLong() const {
    return static_cast<uint32_t>(value);
}

double LongValue::AsDouble() const {
    return value;
}

bool LongValue::AsBoolean() const {
    return value != 0;
}

int LongValue::compare(const Value* other) const {
    return CompareDoubles(AsDouble(), other ? other->AsDouble() : 0.0);
}

// ---------------------------------------------------------------- CountedLongValue

CountedLongValue::CountedLongValue(int32_t number) : LongValue(number) {}

Value* CountedLongValue::Clone() const {
    return const_cast<CountedLongValue*>(this);
}

void CountedLongValue::Delete() const {}

// ---------------------------------------------------------------- CountedBooleanValue

CountedBooleanValue::CountedBooleanValue(bool flag) : CountedLongValue(flag ? 1 : 0) {}

CountedBooleanValue::CountedBooleanValue(const std::string& text) : CountedLongValue(text == "true" ? 1 : 0) {}

Value* CountedBooleanValue::Clone() const {
    Value::Queue().Sync([&] { ++count; });
    return const_cast<CountedBooleanValue*>(this);
}

long CountedBooleanValue::Count() const {
    return Value::Queue().Sync([&] { return count; });
}

std::string CountedBooleanValue::AsString() const {
    return value ? "true" : "false";
}

std::string CountedBooleanValue::AsXML() const {
    return value ? "true" : "false";
}

int CountedBooleanValue::compare(const Value* other) const {
    return Value::compare(other);
}

// ---------------------------------------------------------------- UnsignedValue

UnsignedValue::UnsignedValue(uint32_t number) : value(number) {}

UnsignedValue::UnsignedValue(const std::string& tagged) : value(ReadTagged<uint32_t>(tagged)) {}

Value* UnsignedValue::Clone() const {
    return new UnsignedValue(value);
}

std::string UnsignedValue::AsString() const {
    return std::to_string(value);
}

std::string UnsignedValue::AsXML() const {
    return std::to_string(value);
}

long UnsignedValue::AsLong() const {
    return value;
}

unsigned long UnsignedValue::AsUnsignedLong() const {
    return value;
}

double UnsignedValue::AsDouble() const {
    return value;
}

bool UnsignedValue::AsBoolean() const {
    return value != 0;
}

int UnsignedValue::compare(const Value* other) const {
    uint32_t theirs = other ? static_cast<uint32_t>(other->AsUnsignedLong()) : 0;
    return value < theirs ? -1 : (value > theirs ? 1 : 0);
}

// ---------------------------------------------------------------- DoubleValue

DoubleValue::DoubleValue(double number) : value(number) {}

DoubleValue::DoubleValue(const std::string& tagged)
    : value(ReadTagged<double>(tagged)), taggedText(std::make_unique<const std::string>(tagged)) {}

std::string DoubleValue::Format(double number) {
    // The default stream notation at precision 10 is printf's %.10g, which
    // to_chars gives exactly and several times faster: numbers are written
    // on every read of a number attribute by action code.
    char buffer[64];
    auto [end, error] = std::to_chars(buffer, buffer + sizeof buffer, number, std::chars_format::general, 10);
    if (error != std::errc()) {
        int n = std::snprintf(buffer, sizeof buffer, "%.10g", number);
        return std::string(buffer, n > 0 ? static_cast<size_t>(n) : 0);
    }
    return std::string(buffer, end);
}

Value* DoubleValue::Clone() const {
    return new DoubleValue(value);
}

std::string DoubleValue::AsString() const {
    return taggedText ? *taggedText : Format(value);
}

std::string DoubleValue::AsXML() const {
    return Format(value);
}

long DoubleValue::AsLong() const {
    return TruncateHalfUp(value);
}

unsigned long DoubleValue::AsUnsignedLong() const {
    if (!(value > 0.0)) return 0;
    long n = TruncateHalfUp(value);
    return static_cast<unsigned long>(n);
}

double DoubleValue::AsDouble() const {
    return value;
}

bool DoubleValue::AsBoolean() const {
    return value != 0.0;
}

int DoubleValue::compare(const Value* other) const {
    return CompareDoubles(value, other ? other->AsDouble() : 0.0);
}

#pragma once
// Date and interval values.
#include <mutex>
#include <string>

#include "STime.h"
#include "STimeInterval.h"
#include "Value.h"

// An instant, or a date expression that is resolved on first use. Date values
// are reference counted: Clone returns the same object with one more
// reference, Delete drops one and destroys the object at the last.
class DateValue : public Value {
public:
    explicit DateValue(const STime& time);
    // A time with the text it was written as.
    DateValue(const STime& time, const std::string& text);
    // An unresolved date expression.
    static DateValue* ForExpression(const std::string& expression);

    Value* Clone() const override;
    void Delete() const override;

    // "\"expr\"" while an expression is held, otherwise "never" or ISO 8601.
    std::string AsString() const override;
    std::string AsFormattedString(const std::string& format) const override;
    std::string AsXML() const override;
    std::string AsShortString() const override;
    std::string AsExportString(const std::string& format, Hypertext* document) const override;
    long AsLong() const override;
    double AsDouble() const override;
    STime AsTime() const override;
    // Never sorts after every date.
    int compare(const Value* other) const override;
    using Value::compare;
    // Equal when on the same day.
    bool equal(const Value* other) const override;
    using Value::equal;

    // Evaluates a held expression; runs once.
    void Resolve() const;

    // The written form, "never" or ISO 8601, made once.
    const std::string& Written() const;
    const std::string& Expression() const { return expression; }
    long Count() const;

private:
    mutable std::mutex lock;
    mutable long count = 1;
    mutable bool resolved = false;
    // The written form is made on first use: most reads want only the time.
    mutable bool formatted = false;
    mutable STime time;
    std::string expression;
    mutable std::string written;
};

class IntervalValue : public Value {
public:
    explicit IntervalValue(const STimeInterval& interval);

    Value* Clone() const override;
    std::string AsString() const override;
    std::string AsXML() const override;
    long AsLong() const override;
    double AsDouble() const override;
    int compare(const Value* other) const override;
    using Value::compare;

private:
    STimeInterval interval;
};

#pragma once
// Date and interval values.
#include <atomic>
#include <cstdint>
#include <memory>
#include <string>

#include "STime.h"
#include "STimeInterval.h"
#include "Value.h"

// An instant, or a date expression that is resolved on first use. Date values
// are reference counted: Clone returns the same object with one more
// reference, Delete drops one and destroys the object at the last.
//
// A document holds several dates per note, so the value is kept small: the
// count is a 32-bit atomic, the written form is one exactly sized block made
// on first use (or kept from the text the date was read from), and what an
// expression needs lives apart, made only for expressions. Reads take no
// lock; the forms made lazily are published with a compare-and-swap.
class DateValue : public Value {
public:
    explicit DateValue(const STime& time);
    // A time with the text it was given as; the text is only kept as a
    // cache of the written form, when it is that form already.
    DateValue(const STime& time, const std::string& text);
    ~DateValue() override;
    // An unresolved date expression.
    static DateValue* ForExpression(const std::string& expression);

    Value* Clone() const override;
    void Delete() const override;
    bool IsShared() const override { return true; }

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
    std::string Written() const;
    // The expression held, "" for a plain instant.
    const std::string& Expression() const;
    long Count() const;

private:
    struct Held {
        std::string text;
        std::atomic<bool> resolved{false};
    };
    // The written form, null until made; a block of new char[], or a mark
    // that it is the instant's universal-time form, made when asked for.
    const char* WrittenText() const;
    bool Resolved() const { return !held || held->resolved.load(std::memory_order_acquire); }

    mutable std::atomic<int32_t> count{1};
    // Set once: at construction, or by Resolve before `held->resolved`.
    mutable STime time;
    mutable std::atomic<const char*> written{nullptr};
    std::unique_ptr<Held> held;
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

#pragma once
// Date functions: making dates and times, reading and setting one part of a
// date, differences in whole units, and intervals. Dates are read from their
// arguments with GetDate; a function whose answer is a date gives the same
// instant from its own GetDate, so that nested calls lose no precision to the
// text form.
#include "AAValue.h"

class STimeInterval;

// `date(d)`: the date as text. `date(year, month, day)` and
// `date(year, month, day, hour, minute)`: that date, as ISO 8601 text.
class AADate : public AAFunction {
public:
    using AAFunction::AAFunction;
    const char* ClassName() const override { return "AADate"; }
    ActionResult ActionValue(Node* note, MatchList& matches) const override;
    STime GetDate(Node* note, MatchList& matches) const override;
    int ResultType(Node* note, MatchList& matches) const override;

private:
    // The date the arguments make; false when they make none.
    bool Make(Node* note, MatchList& matches, STime& date, bool& fromParts) const;
};

// `time(d)`: "H:MM" of the date. `time(d, "h:mm")` and `time(d, hour,
// minute)`: the date with that time of day.
class AATime : public AAFunction {
public:
    using AAFunction::AAFunction;
    const char* ClassName() const override { return "AATime"; }
    ActionResult ActionValue(Node* note, MatchList& matches) const override;
    STime GetDate(Node* note, MatchList& matches) const override;
    int ResultType(Node* note, MatchList& matches) const override;

private:
    STime WithTime(Node* note, MatchList& matches) const;
};

// `interval(a, b)`: the duration from a to b.
class AAInterval : public AAFunction {
public:
    using AAFunction::AAFunction;
    const char* ClassName() const override { return "AAInterval"; }
    ActionResult ActionValue(Node* note, MatchList& matches) const override;
    int ResultType(Node* note, MatchList& matches) const override;
};

// One part of a date: `hour(d)` or `$D.hour` reads it, `hour(d, n)` answers
// the date with that part replaced. Parts that have a meaning for a duration
// read the display field of an interval argument.
class AADatePart : public AAFunction {
public:
    using AAFunction::AAFunction;
    ActionResult ActionValue(Node* note, MatchList& matches) const override;
    STime GetDate(Node* note, MatchList& matches) const override;
    // Date with a second argument, number otherwise.
    int ResultType(Node* note, MatchList& matches) const override;

protected:
    virtual long Read(const STime& date) const = 0;
    // Whether an interval argument is read as a duration.
    virtual bool ReadsIntervals() const { return false; }
    virtual long ReadInterval(const STimeInterval& interval) const { return 0; }
    // Whether a second argument sets the part.
    virtual bool Sets() const { return true; }
    virtual STime Replace(const STime& date, long value) const { return date; }

private:
    // The date with the part set from the second argument.
    STime SetDate(Node* note, MatchList& matches) const;
};

class AADay : public AADatePart {
public:
    using AADatePart::AADatePart;
    const char* ClassName() const override { return "AADay"; }

protected:
    long Read(const STime& date) const override;
    bool ReadsIntervals() const override { return true; }
    long ReadInterval(const STimeInterval& interval) const override;
    STime Replace(const STime& date, long value) const override;
};

class AAHour : public AADatePart {
public:
    using AADatePart::AADatePart;
    const char* ClassName() const override { return "AAHour"; }

protected:
    long Read(const STime& date) const override;
    bool ReadsIntervals() const override { return true; }
    long ReadInterval(const STimeInterval& interval) const override;
    STime Replace(const STime& date, long value) const override;
};

class AAMinute : public AADatePart {
public:
    using AADatePart::AADatePart;
    const char* ClassName() const override { return "AAMinute"; }

protected:
    long Read(const STime& date) const override;
    bool ReadsIntervals() const override { return true; }
    long ReadInterval(const STimeInterval& interval) const override;
    STime Replace(const STime& date, long value) const override;
};

class AASecond : public AADatePart {
public:
    using AADatePart::AADatePart;
    const char* ClassName() const override { return "AASecond"; }

protected:
    long Read(const STime& date) const override;
    bool ReadsIntervals() const override { return true; }
    long ReadInterval(const STimeInterval& interval) const override;
    STime Replace(const STime& date, long value) const override;
};

class AAMonth : public AADatePart {
public:
    using AADatePart::AADatePart;
    const char* ClassName() const override { return "AAMonth"; }

protected:
    long Read(const STime& date) const override;
    STime Replace(const STime& date, long value) const override;
};

class AAYear : public AADatePart {
public:
    using AADatePart::AADatePart;
    const char* ClassName() const override { return "AAYear"; }

protected:
    long Read(const STime& date) const override;
    STime Replace(const STime& date, long value) const override;
};

// The calendar's week of the year; read only.
class AAWeekOfYear : public AADatePart {
public:
    using AADatePart::AADatePart;
    const char* ClassName() const override { return "AAWeekOfYear"; }

protected:
    long Read(const STime& date) const override;
    bool Sets() const override { return false; }
};

// The weekday, 1 for Sunday; read only.
class AAWeekday : public AADatePart {
public:
    using AADatePart::AADatePart;
    const char* ClassName() const override { return "AAWeekday"; }

protected:
    long Read(const STime& date) const override;
    bool Sets() const override { return false; }
};

// `days(a, b)` and its kin: the whole units from a to b, signed and
// truncated by the calendar. One argument answers false.
class AADays : public AAFunction {
public:
    using AAFunction::AAFunction;
    const char* ClassName() const override { return "AADays"; }
    ActionResult ActionValue(Node* note, MatchList& matches) const override;
    int ResultType(Node* note, MatchList& matches) const override;

protected:
    virtual double Difference(const STime& from, const STime& to) const;
};

class AAHours : public AADays {
public:
    using AADays::AADays;
    const char* ClassName() const override { return "AAHours"; }

protected:
    double Difference(const STime& from, const STime& to) const override;
};

class AAMinutes : public AADays {
public:
    using AADays::AADays;
    const char* ClassName() const override { return "AAMinutes"; }

protected:
    double Difference(const STime& from, const STime& to) const override;
};

class AASeconds : public AADays {
public:
    using AADays::AADays;
    const char* ClassName() const override { return "AASeconds"; }

protected:
    double Difference(const STime& from, const STime& to) const override;
};

class AAWeeks : public AADays {
public:
    using AADays::AADays;
    const char* ClassName() const override { return "AAWeeks"; }

protected:
    double Difference(const STime& from, const STime& to) const override;
};

class AAMonths : public AADays {
public:
    using AADays::AADays;
    const char* ClassName() const override { return "AAMonths"; }

protected:
    double Difference(const STime& from, const STime& to) const override;
};

class AAYears : public AADays {
public:
    using AADays::AADays;
    const char* ClassName() const override { return "AAYears"; }

protected:
    double Difference(const STime& from, const STime& to) const override;
};

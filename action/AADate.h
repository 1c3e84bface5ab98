#pragma once
// Date functions: making dates and times, reading and setting one part of a date, differences in whole units, and intervals.
#include "AAValue.h"

class AADate : public AAFunction {
public:
    using AAFunction::AAFunction;
    const char* ClassName() const override { return "AADate"; }
};

class AATime : public AAFunction {
public:
    using AAFunction::AAFunction;
    const char* ClassName() const override { return "AATime"; }
};

class AAInterval : public AAFunction {
public:
    using AAFunction::AAFunction;
    const char* ClassName() const override { return "AAInterval"; }
};

class AADay : public AAFunction {
public:
    using AAFunction::AAFunction;
    const char* ClassName() const override { return "AADay"; }
};

class AAHour : public AAFunction {
public:
    using AAFunction::AAFunction;
    const char* ClassName() const override { return "AAHour"; }
};

class AAMinute : public AAFunction {
public:
    using AAFunction::AAFunction;
    const char* ClassName() const override { return "AAMinute"; }
};

class AASecond : public AAFunction {
public:
    using AAFunction::AAFunction;
    const char* ClassName() const override { return "AASecond"; }
};

class AAMonth : public AAFunction {
public:
    using AAFunction::AAFunction;
    const char* ClassName() const override { return "AAMonth"; }
};

class AAYear : public AAFunction {
public:
    using AAFunction::AAFunction;
    const char* ClassName() const override { return "AAYear"; }
};

class AAWeekOfYear : public AAFunction {
public:
    using AAFunction::AAFunction;
    const char* ClassName() const override { return "AAWeekOfYear"; }
};

class AAWeekday : public AAFunction {
public:
    using AAFunction::AAFunction;
    const char* ClassName() const override { return "AAWeekday"; }
};

class AADays : public AAFunction {
public:
    using AAFunction::AAFunction;
    const char* ClassName() const override { return "AADays"; }
};

class AAHours : public AADays {
public:
    using AADays::AADays;
    const char* ClassName() const override { return "AAHours"; }
};

class AAMinutes : public AADays {
public:
    using AADays::AADays;
    const char* ClassName() const override { return "AAMinutes"; }
};

class AASeconds : public AADays {
public:
    using AADays::AADays;
    const char* ClassName() const override { return "AASeconds"; }
};

class AAWeeks : public AADays {
public:
    using AADays::AADays;
    const char* ClassName() const override { return "AAWeeks"; }
};

class AAMonths : public AADays {
public:
    using AADays::AADays;
    const char* ClassName() const override { return "AAMonths"; }
};

class AAYears : public AADays {
public:
    using AADays::AADays;
    const char* ClassName() const override { return "AAYears"; }
};

#pragma once
// Group functions over the notes a designator names: designator, then the further arguments. The `_if` forms take a condition first.
#include "AAValue.h"

class AACollect : public AAFunction {
public:
    using AAFunction::AAFunction;
    const char* ClassName() const override { return "AACollect"; }
};

class AACollectIf : public AACollect {
public:
    using AACollect::AACollect;
    const char* ClassName() const override { return "AACollectIf"; }
};

class AACountIf : public AACollectIf {
public:
    using AACollectIf::AACollectIf;
    const char* ClassName() const override { return "AACountIf"; }
};

class AASum : public AACollect {
public:
    using AACollect::AACollect;
    const char* ClassName() const override { return "AASum"; }
};

class AASumIf : public AASum {
public:
    using AASum::AASum;
    const char* ClassName() const override { return "AASumIf"; }
};

class AAAvg : public AASum {
public:
    using AASum::AASum;
    const char* ClassName() const override { return "AAAvg"; }
};

class AAAvgIf : public AAAvg {
public:
    using AAAvg::AAAvg;
    const char* ClassName() const override { return "AAAvgIf"; }
};

class AAEvery : public AACollect {
public:
    using AACollect::AACollect;
    const char* ClassName() const override { return "AAEvery"; }
};

class AAAny : public AAEvery {
public:
    using AAEvery::AAEvery;
    const char* ClassName() const override { return "AAAny"; }
};

class AAValues : public AACollect {
public:
    using AACollect::AACollect;
    const char* ClassName() const override { return "AAValues"; }
};

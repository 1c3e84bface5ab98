#pragma once
// Link functions: making and removing links, paths along links, distances and neighbours.
#include "AAValue.h"

class AALinkTo : public AAFunction {
public:
    using AAFunction::AAFunction;
    const char* ClassName() const override { return "AALinkTo"; }
};

class AALinkToOriginal : public AAFunction {
public:
    using AAFunction::AAFunction;
    const char* ClassName() const override { return "AALinkToOriginal"; }
};

class AALinkFrom : public AAFunction {
public:
    using AAFunction::AAFunction;
    const char* ClassName() const override { return "AALinkFrom"; }
};

class AALinkFromOriginal : public AAFunction {
public:
    using AAFunction::AAFunction;
    const char* ClassName() const override { return "AALinkFromOriginal"; }
};

class AAUnlinkTo : public AAFunction {
public:
    using AAFunction::AAFunction;
    const char* ClassName() const override { return "AAUnlinkTo"; }
};

class AAUnlinkToOriginal : public AAFunction {
public:
    using AAFunction::AAFunction;
    const char* ClassName() const override { return "AAUnlinkToOriginal"; }
};

class AAUnlinkFrom : public AAFunction {
public:
    using AAFunction::AAFunction;
    const char* ClassName() const override { return "AAUnlinkFrom"; }
};

class AAUnlinkFromOriginal : public AAFunction {
public:
    using AAFunction::AAFunction;
    const char* ClassName() const override { return "AAUnlinkFromOriginal"; }
};

class AAOnPath : public AAFunction {
public:
    using AAFunction::AAFunction;
    const char* ClassName() const override { return "AAOnPath"; }
};

class AADistance : public AAFunction {
public:
    using AAFunction::AAFunction;
    const char* ClassName() const override { return "AADistance"; }
};

class AADistanceBetween : public AAFunction {
public:
    using AAFunction::AAFunction;
    const char* ClassName() const override { return "AADistanceBetween"; }
};

class AADrivingTime : public AAFunction {
public:
    using AAFunction::AAFunction;
    const char* ClassName() const override { return "AADrivingTime"; }
};

class AANeighbors : public AAFunction {
public:
    using AAFunction::AAFunction;
    const char* ClassName() const override { return "AANeighbors"; }
    int Priority() const override { return kPriorityDotOperator; }
};

class AANeighbors2 : public AAFunction {
public:
    using AAFunction::AAFunction;
    const char* ClassName() const override { return "AANeighbors2"; }
};

class AANeighborsWithin : public AAFunction {
public:
    using AAFunction::AAFunction;
    const char* ClassName() const override { return "AANeighborsWithin"; }
};

class AANeighbors2Within : public AAFunction {
public:
    using AAFunction::AAFunction;
    const char* ClassName() const override { return "AANeighbors2Within"; }
};

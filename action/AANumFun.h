#pragma once
// Numeric functions: one number in, one number out, and the number forms of
// the dot operators (`.precision`, `.toNumber`).
#include "AAValue.h"

class AALog : public AANumFun {
public:
    using AANumFun::AANumFun;
    const char* ClassName() const override { return "AALog"; }
    double Compute(double x) const override;
};

class AASqrt : public AANumFun {
public:
    using AANumFun::AANumFun;
    const char* ClassName() const override { return "AASqrt"; }
    double Compute(double x) const override;
};

class AAAbs : public AANumFun {
public:
    using AANumFun::AANumFun;
    const char* ClassName() const override { return "AAAbs"; }
    double Compute(double x) const override;
};

// Trigonometry works in radians.
class AACos : public AANumFun {
public:
    using AANumFun::AANumFun;
    const char* ClassName() const override { return "AACos"; }
    double Compute(double x) const override;
};

class AASin : public AANumFun {
public:
    using AANumFun::AANumFun;
    const char* ClassName() const override { return "AASin"; }
    double Compute(double x) const override;
};

class AATan : public AANumFun {
public:
    using AANumFun::AANumFun;
    const char* ClassName() const override { return "AATan"; }
    double Compute(double x) const override;
};

class AAArcTan : public AANumFun {
public:
    using AANumFun::AANumFun;
    const char* ClassName() const override { return "AAArcTan"; }
    double Compute(double x) const override;
};

class AAExp : public AANumFun {
public:
    using AANumFun::AANumFun;
    const char* ClassName() const override { return "AAExp"; }
    double Compute(double x) const override;
};

class AADegrees : public AANumFun {
public:
    using AANumFun::AANumFun;
    const char* ClassName() const override { return "AADegrees"; }
    double Compute(double x) const override;
};

class AARadians : public AANumFun {
public:
    using AANumFun::AANumFun;
    const char* ClassName() const override { return "AARadians"; }
    double Compute(double x) const override;
};

// Halves round away from zero.
class AARound : public AANumFun {
public:
    using AANumFun::AANumFun;
    const char* ClassName() const override { return "AARound"; }
    double Compute(double x) const override;
};

class AAFloor : public AANumFun {
public:
    using AANumFun::AANumFun;
    const char* ClassName() const override { return "AAFloor"; }
    double Compute(double x) const override;
};

class AACeil : public AANumFun {
public:
    using AANumFun::AANumFun;
    const char* ClassName() const override { return "AACeil"; }
    double Compute(double x) const override;
};

// A pseudo-random number from 0 to 1; the argument is not used.
class AARand : public AANumFun {
public:
    using AANumFun::AANumFun;
    const char* ClassName() const override { return "AARand"; }
    ActionResult ActionValue(Node* note, MatchList& matches) const override;
};

// `pow(x, y)`: the first argument to the power of the second.
class AAPower : public AANumFun {
public:
    using AANumFun::AANumFun;
    const char* ClassName() const override { return "AAPower"; }
    ActionResult ActionValue(Node* note, MatchList& matches) const override;
};

// `.precision(n)`: a number receiver in fixed notation with n places (2 by
// default); any other receiver gives "0".
class AAPrecision : public AADotOperator {
public:
    using AADotOperator::AADotOperator;
    const char* ClassName() const override { return "AAPrecision"; }
    ActionResult ActionValue(Node* note, MatchList& matches) const override;
    int ResultType(Node* note, MatchList& matches) const override;
};

// `.toNumber`: a date receiver gives its number; others pass through.
class AAToNumber : public AADotOperator {
public:
    using AADotOperator::AADotOperator;
    const char* ClassName() const override { return "AAToNumber"; }
    ActionResult ActionValue(Node* note, MatchList& matches) const override;
    int ResultType(Node* note, MatchList& matches) const override;
};

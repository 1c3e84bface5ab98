#pragma once
// Colour functions: making a colour from channels, and reading or replacing one channel or one HSB component. Channels are 0 to 255.
#include "AAValue.h"

class AARGB : public AAFunction {
public:
    using AAFunction::AAFunction;
    const char* ClassName() const override { return "AARGB"; }
};

class AAHue : public AAFunction {
public:
    using AAFunction::AAFunction;
    const char* ClassName() const override { return "AAHue"; }
    int Priority() const override { return kPriorityDotOperator; }
};

class AASaturation : public AAFunction {
public:
    using AAFunction::AAFunction;
    const char* ClassName() const override { return "AASaturation"; }
};

class AABrightness : public AAFunction {
public:
    using AAFunction::AAFunction;
    const char* ClassName() const override { return "AABrightness"; }
};

class AARed : public AADotOperator {
public:
    using AADotOperator::AADotOperator;
    const char* ClassName() const override { return "AARed"; }
};

class AAGreen : public AADotOperator {
public:
    using AADotOperator::AADotOperator;
    const char* ClassName() const override { return "AAGreen"; }
};

class AABlue : public AADotOperator {
public:
    using AADotOperator::AADotOperator;
    const char* ClassName() const override { return "AABlue"; }
};

class AADotHue : public AADotOperator {
public:
    using AADotOperator::AADotOperator;
    const char* ClassName() const override { return "AADotHue"; }
};

class AADotSaturation : public AADotOperator {
public:
    using AADotOperator::AADotOperator;
    const char* ClassName() const override { return "AADotSaturation"; }
};

class AADotBrightness : public AADotOperator {
public:
    using AADotOperator::AADotOperator;
    const char* ClassName() const override { return "AADotBrightness"; }
};

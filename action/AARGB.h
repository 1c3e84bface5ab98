#pragma once
// Colour functions: making a colour from channels, and reading or replacing one channel or one HSB component. Channels are 0 to 255.
#include "AAValue.h"

// `rgb(r, g, b)`: the colour of three channels, as "#rrggbb".
class AARGB : public AAFunction {
public:
    using AAFunction::AAFunction;
    const char* ClassName() const override { return "AARGB"; }
    ActionResult ActionValue(Node* note, MatchList& matches) const override;
    int ResultType(Node* note, MatchList& matches) const override;
};

// `hue(colour)`: the hue in degrees; `hue(colour, h)`: the colour with hue h.
// Saturation and brightness, 0 to 100, do the same for their component.
class AAHue : public AAFunction {
public:
    using AAFunction::AAFunction;
    const char* ClassName() const override { return "AAHue"; }
    int Priority() const override { return kPriorityDotOperator; }
    ActionResult ActionValue(Node* note, MatchList& matches) const override;
    int ResultType(Node* note, MatchList& matches) const override;

    enum Component { kHue = 0, kSaturation = 1, kBrightness = 2 };

protected:
    virtual Component Part() const { return kHue; }
};

class AASaturation : public AAHue {
public:
    using AAHue::AAHue;
    const char* ClassName() const override { return "AASaturation"; }
    int Priority() const override { return kPriorityValue; }

protected:
    Component Part() const override { return kSaturation; }
};

class AABrightness : public AAHue {
public:
    using AAHue::AAHue;
    const char* ClassName() const override { return "AABrightness"; }
    int Priority() const override { return kPriorityValue; }

protected:
    Component Part() const override { return kBrightness; }
};

// `.red`, `.green`, `.blue` and `.hue`, `.saturation`, `.brightness`: one
// part of the receiver read as a colour, as a number.
class AAColorPart : public AADotOperator {
public:
    using AADotOperator::AADotOperator;
    ActionResult ActionValue(Node* note, MatchList& matches) const override;
    int ResultType(Node* note, MatchList& matches) const override;

protected:
    virtual double Part(const PColor& color) const = 0;
};

class AARed : public AAColorPart {
public:
    using AAColorPart::AAColorPart;
    const char* ClassName() const override { return "AARed"; }

protected:
    double Part(const PColor& color) const override { return color.red >> 8; }
};

class AAGreen : public AAColorPart {
public:
    using AAColorPart::AAColorPart;
    const char* ClassName() const override { return "AAGreen"; }

protected:
    double Part(const PColor& color) const override { return color.green >> 8; }
};

class AABlue : public AAColorPart {
public:
    using AAColorPart::AAColorPart;
    const char* ClassName() const override { return "AABlue"; }

protected:
    double Part(const PColor& color) const override { return color.blue >> 8; }
};

class AADotHue : public AAColorPart {
public:
    using AAColorPart::AAColorPart;
    const char* ClassName() const override { return "AADotHue"; }

protected:
    double Part(const PColor& color) const override;
};

class AADotSaturation : public AAColorPart {
public:
    using AAColorPart::AAColorPart;
    const char* ClassName() const override { return "AADotSaturation"; }

protected:
    double Part(const PColor& color) const override;
};

class AADotBrightness : public AAColorPart {
public:
    using AAColorPart::AAColorPart;
    const char* ClassName() const override { return "AADotBrightness"; }

protected:
    double Part(const PColor& color) const override;
};

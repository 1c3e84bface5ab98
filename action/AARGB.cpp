#include "AARGB.h"

#include <algorithm>

#include "AAArguments.h"
#include "AttributeType.h"
#include "MatchList.h"

using Type = AttributeType;

namespace {

// A channel of the language, 0 to 255, widened to the colour's 16 bits.
uint16_t Channel(const AAValue* value, Node* note, MatchList& matches) {
    long level = value ? AAValue::ComputeValue(value, note, matches).AsNumber() : 0;
    return static_cast<uint16_t>(std::clamp(level, 0L, 255L) << 8);
}

double Component(const PColor& color, AAHue::Component part) {
    double hsv[3] = {0.0, 0.0, 0.0};
    color.ToHSV(hsv[0], hsv[1], hsv[2]);
    return hsv[part];
}

}  // namespace

ActionResult AARGB::ActionValue(Node* note, MatchList& matches) const {
    const AAValue* red = operand.get();
    const AAValue* green = NthArgument(red, 1);
    const AAValue* blue = NthArgument(red, 2);
    PColor color(Channel(red, note, matches), Channel(green, note, matches), Channel(blue, note, matches));
    return ActionResult(color.AsString());
}

int AARGB::ResultType(Node*, MatchList&) const { return Type::kColor; }

ActionResult AAHue::ActionValue(Node* note, MatchList& matches) const {
    const AAValue* colour = operand.get();
    const AAValue* replacement = NthArgument(colour, 1);
    PColor color = colour ? ComputeValue(colour, note, matches).AsColor(note) : PColor::Black();
    double hsv[3] = {0.0, 0.0, 0.0};
    color.ToHSV(hsv[0], hsv[1], hsv[2]);
    if (!replacement)
        return ActionResult(hsv[Part()]);
    if (!note)
        return ActionResult(std::string());
    hsv[Part()] = ComputeValue(replacement, note, matches).AsDouble();
    return ActionResult(PColor::HSV(hsv[0], hsv[1], hsv[2]).AsString());
}

int AAHue::ResultType(Node*, MatchList&) const {
    return NthArgument(operand.get(), 1) ? Type::kColor : Type::kNumber;
}

ActionResult AAColorPart::ActionValue(Node* note, MatchList& matches) const {
    PColor color = left ? ComputeValue(left.get(), note, matches).AsColor(note) : PColor::Black();
    return ActionResult(Part(color));
}

int AAColorPart::ResultType(Node*, MatchList&) const { return Type::kNumber; }

double AADotHue::Part(const PColor& color) const { return Component(color, AAHue::kHue); }
double AADotSaturation::Part(const PColor& color) const { return Component(color, AAHue::kSaturation); }
double AADotBrightness::Part(const PColor& color) const { return Component(color, AAHue::kBrightness); }

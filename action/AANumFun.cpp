#include "AANumFun.h"

#include <cmath>
#include <cstdio>
#include <cstdlib>

#include "AttributeType.h"
#include "MatchList.h"

using Type = AttributeType;

ActionResult AANumFun::ActionValue(Node* note, MatchList& matches) const {
    double x = operand ? ComputeValue(operand.get(), note, matches).AsDouble() : 0.0;
    return ActionResult(Compute(x));
}

int AANumFun::ResultType(Node*, MatchList&) const { return Type::kNumber; }

double AALog::Compute(double x) const { return std::log(x); }
double AASqrt::Compute(double x) const { return std::sqrt(x); }
double AAAbs::Compute(double x) const { return std::fabs(x); }
double AACos::Compute(double x) const { return std::cos(x); }
double AASin::Compute(double x) const { return std::sin(x); }
double AATan::Compute(double x) const { return std::tan(x); }
double AAArcTan::Compute(double x) const { return std::atan(x); }
double AAExp::Compute(double x) const { return std::exp(x); }
double AADegrees::Compute(double x) const { return x * 180.0 / M_PI; }
double AARadians::Compute(double x) const { return x * M_PI / 180.0; }
double AARound::Compute(double x) const { return std::round(x); }
double AAFloor::Compute(double x) const { return std::floor(x); }
double AACeil::Compute(double x) const { return std::ceil(x); }

ActionResult AARand::ActionValue(Node*, MatchList&) const {
    // rand() answers at most RAND_MAX, which is 2147483647 here.
    return ActionResult(std::rand() / 2147483647.0);
}

ActionResult AAPower::ActionValue(Node* note, MatchList& matches) const {
    const AAValue* base = operand.get();
    const AAValue* exponent = base ? base->GetNextArgument() : nullptr;
    double x = base ? ComputeValue(base, note, matches).AsDouble() : 0.0;
    double y = exponent ? ComputeValue(exponent, note, matches).AsDouble() : 0.0;
    return ActionResult(std::pow(x, y));
}

ActionResult AAPrecision::ActionValue(Node* note, MatchList& matches) const {
    if (!left)
        return ActionResult("0");
    int type = left->ResultType(note, matches);
    if (type != Type::kNumber)
        return ActionResult("0");
    double value = ComputeValue(left.get(), note, matches).AsDouble();
    // `.precision` without a number keeps two places.
    std::string given = right ? ComputeValue(right.get(), note, matches).AsString() : std::string();
    long places = given.empty() ? 2 : ActionResult(given).AsNumber();
    if (places < 0)
        places = 0;
    if (places > 40)
        places = 40;
    char buffer[400];
    std::snprintf(buffer, sizeof buffer, "%.*f", static_cast<int>(places), value);
    return ActionResult(std::string(buffer));
}

int AAPrecision::ResultType(Node*, MatchList&) const { return Type::kString; }

ActionResult AAToNumber::ActionValue(Node* note, MatchList& matches) const {
    if (!left)
        return ActionResult("0");
    if (left->ResultType(note, matches) == Type::kDate)
        return ActionResult(left->GetDate(note, matches).SecondsSince1970());
    return ComputeValue(left.get(), note, matches);
}

int AAToNumber::ResultType(Node*, MatchList&) const { return Type::kNumber; }

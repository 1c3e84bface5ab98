#include "MarkupGroup.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>

#include "Attribute.h"
#include "AttributeType.h"
#include "Node.h"

MarkupEvery::MarkupEvery(std::string name, std::string arguments, bool every)
    : MarkupGroup(std::move(name), std::move(arguments)), every(every) {}

bool MarkupEvery::Eval(Node* node, ExportTemplate* exportTemplate) {
    if (!node)
        return false;
    std::string attribute = AttributeName(EvaluatedArg(1, node, exportTemplate));
    bool compare = ArgCount() > 2;
    std::string wanted = compare ? EvaluatedArg(2, node, exportTemplate) : std::string();
    auto test = [&](Node* n) { return compare ? n->GetString(attribute) == wanted : n->GetBoolean(attribute); };
    NodeVector group = Choose(node, exportTemplate);
    if (group.empty())
        return node->GetBoolean(attribute);
    for (Node* n : group) {
        bool ok = test(n);
        if (every && !ok)
            return false;
        if (!every && ok)
            return true;
    }
    return every;
}

std::string MarkupEvery::ExportValue(Node* node, ExportTemplate* exportTemplate) {
    return Eval(node, exportTemplate) ? " true " : " false ";
}

MarkupGroupNumeric::MarkupGroupNumeric(std::string name, std::string arguments, Kind kind)
    : MarkupGroup(std::move(name), std::move(arguments)), kind(kind) {}

double MarkupGroupNumeric::Compute(Node* node, ExportTemplate* exportTemplate) {
    if (!node)
        return 0.0;
    NodeVector group = Choose(node, exportTemplate);
    if (kind == kCount)
        return static_cast<double>(group.size());
    std::string attribute = AttributeName(EvaluatedArg(1, node, exportTemplate));
    if (group.empty())
        return node->GetDouble(attribute);
    const ::Attribute* definition = node->GetAttribute(attribute);
    bool isDate = definition && definition->IsValid() && definition->GetType() == AttributeType::kDate;
    double sum = 0.0, least = 0.0, most = 0.0;
    bool first = true;
    for (Node* n : group) {
        double value = isDate ? n->GetDate(attribute).SecondsSince1970() : n->GetDouble(attribute);
        if (isDate && n->GetDate(attribute).IsNever())
            value = 0.0;
        sum += value;
        if (kind == kMin && isDate && value == 0.0)
            continue;
        if (first || value < least)
            least = value;
        if (first || value > most)
            most = value;
        first = false;
    }
    switch (kind) {
    case kSum: return sum;
    case kMin: return least;
    case kMax: return most;
    case kMean: return sum / static_cast<double>(group.size());
    case kCount: break;
    }
    return 0.0;
}

std::string MarkupGroupNumeric::ExportValue(Node* node, ExportTemplate* exportTemplate) {
    int decimals = 2;
    if (ArgCount() > 2 && !Trim(Arg(2)).empty())
        decimals = std::clamp(std::atoi(EvaluatedArg(2, node, exportTemplate).c_str()), 0, 20);
    char buffer[512];
    std::snprintf(buffer, sizeof buffer, "%.*f", decimals, Compute(node, exportTemplate));
    return buffer;
}

bool MarkupGroupNumeric::Eval(Node* node, ExportTemplate* exportTemplate) {
    return Compute(node, exportTemplate) != 0.0;
}

#pragma once
// Elements over a group of notes named by a designator: ^every^, ^any^ and
// the numbers ^count^, ^sum^, ^min^, ^max^, ^mean^.
#include "MarkupExportElement.h"

class MarkupEvery : public MarkupGroup {
public:
    MarkupEvery(std::string name, std::string arguments, bool every);
    bool Eval(Node* node, ExportTemplate* exportTemplate) override;
    std::string ExportValue(Node* node, ExportTemplate* exportTemplate) override;

private:
    bool every;
};

class MarkupGroupNumeric : public MarkupGroup {
public:
    enum Kind { kCount, kSum, kMin, kMax, kMean };
    MarkupGroupNumeric(std::string name, std::string arguments, Kind kind);
    double Compute(Node* node, ExportTemplate* exportTemplate);
    std::string ExportValue(Node* node, ExportTemplate* exportTemplate) override;
    bool Eval(Node* node, ExportTemplate* exportTemplate) override;
    double AsNumber(Node* node, ExportTemplate* exportTemplate) override { return Compute(node, exportTemplate); }

private:
    Kind kind;
};

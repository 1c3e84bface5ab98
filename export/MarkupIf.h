#pragma once
// Conditions: ^if(...)^ ... ^else^ ... ^endif^ and the elements that answer
// true or false.
#include <memory>

#include "MarkupExportElement.h"

// Its children are the condition (read from the argument text); the
// clauses are the blocks that follow it.
class MarkupIf : public MarkupExportElement {
public:
    MarkupIf(std::string name, std::string arguments);
    bool Eval(Node* node, ExportTemplate* exportTemplate) override;
    std::string ExportValue(Node* node, ExportTemplate* exportTemplate) override;
    void AddTrueClause(ExportElement* clause) override { trueClause.reset(clause); }
    void AddFalseClause(ExportElement* clause) override { falseClause.reset(clause); }
    ExportElement* TrueClause() const { return trueClause.get(); }
    ExportElement* FalseClause() const { return falseClause.get(); }

private:
    std::unique_ptr<ExportElement> trueClause;
    std::unique_ptr<ExportElement> falseClause;
};

// Block ends: they expand to nothing.
class MarkupElse : public MarkupExportElement {
public:
    using MarkupExportElement::MarkupExportElement;
    bool IsElse() const override { return true; }
};

class MarkupEndif : public MarkupExportElement {
public:
    using MarkupExportElement::MarkupExportElement;
    bool IsEndif() const override { return true; }
};

class MarkupNot : public MarkupPredicate {
public:
    using MarkupPredicate::MarkupPredicate;
    bool Eval(Node* node, ExportTemplate* exportTemplate) override;
};

// ^exists(childlinks | basiclinks | inboundlinks | note | attribute)^.
class MarkupExists : public MarkupExportElement {
public:
    using MarkupExportElement::MarkupExportElement;
    bool Eval(Node* node, ExportTemplate* exportTemplate) override;
    std::string ExportValue(Node* node, ExportTemplate* exportTemplate) override;
};

// Two-argument tests of text.
class MarkupCompare : public MarkupWithArgumentList {
public:
    enum Kind { kEqual, kContains, kBeginsWith, kEndsWith, kDays };
    MarkupCompare(std::string name, std::string arguments, Kind kind);
    bool Eval(Node* node, ExportTemplate* exportTemplate) override;

private:
    Kind kind;
};

class MarkupIsInside : public MarkupNodeRelative {
public:
    using MarkupNodeRelative::MarkupNodeRelative;
    bool Eval(Node* node, ExportTemplate* exportTemplate) override;
    std::string ExportValue(Node* node, ExportTemplate* exportTemplate) override;
};

class MarkupIsDescendedFrom : public MarkupNodeRelative {
public:
    using MarkupNodeRelative::MarkupNodeRelative;
    bool Eval(Node* node, ExportTemplate* exportTemplate) override;
    std::string ExportValue(Node* node, ExportTemplate* exportTemplate) override;
};

#pragma once
// Elements that expand other notes with a template: children, descendants,
// chosen notes, a random child.
#include "MarkupExportElement.h"

// ^descendants(template, count)^ and ^children(template, count)^.
class MarkupIncludeChildrenHere : public MarkupExportElement {
public:
    MarkupIncludeChildrenHere(std::string name, std::string arguments, bool justChildren);
    int Type() const override { return kIncludeChildrenHere; }
    std::string ExportValue(Node* node, ExportTemplate* exportTemplate) override;
    bool Eval(Node* node, ExportTemplate* exportTemplate) override;

private:
    std::string templateName;
    long limit = -1;
    bool justChildren;
};

// ^include(notes, template)^.
class MarkupInclude : public MarkupExportElement {
public:
    MarkupInclude(std::string name, std::string arguments);
    int Type() const override { return kInclude; }
    std::string ExportValue(Node* node, ExportTemplate* exportTemplate) override;
    NodeVector ChosenNodes(Node* node, ExportTemplate* exportTemplate);
    std::string DoExport(Node* note, Node* current, ExportTemplate* exportTemplate);

private:
    std::string list;
    std::string templateName;
};

class MarkupRandomChild : public MarkupExportElement {
public:
    using MarkupExportElement::MarkupExportElement;
    std::string ExportValue(Node* node, ExportTemplate* exportTemplate) override;
};

// ^stretch(label, notes)^: the label.
class MarkupStretchtext : public MarkupExportElement {
public:
    using MarkupExportElement::MarkupExportElement;
    std::string ExportValue(Node* node, ExportTemplate* exportTemplate) override;
};

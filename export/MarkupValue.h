#pragma once
// Elements that give one value of a note or of the export: titles, values
// of action code, attributes, dates, file names and addresses.
#include "AAValue.h"
#include "MarkupExportElement.h"

class MarkupTitle : public MarkupNodeRelative {
public:
    using MarkupNodeRelative::MarkupNodeRelative;
    std::string ExportValue(Node* node, ExportTemplate* exportTemplate) override;
    bool Eval(Node* node, ExportTemplate* exportTemplate) override;
};

// ^value(expression)^: the expression's text for the note.
class MarkupValue : public MarkupExportElement {
public:
    MarkupValue(std::string name, std::string arguments);
    std::string ExportValue(Node* node, ExportTemplate* exportTemplate) override;
    bool Eval(Node* node, ExportTemplate* exportTemplate) override;

private:
    ActionResult Compute(Node* node, ExportTemplate* exportTemplate);
    AAValuePtr expression;
};

// ^action(code)^: queues the code to run on the note once the export is
// over (ExportActionQueue); writes nothing.
class MarkupAction : public MarkupExportElement {
public:
    using MarkupExportElement::MarkupExportElement;
    std::string ExportValue(Node* node, ExportTemplate* exportTemplate) override;
};

// ^do(macro, arguments)^.
class MarkupDo : public MarkupExportElement {
public:
    using MarkupExportElement::MarkupExportElement;
    std::string ExportValue(Node* node, ExportTemplate* exportTemplate) override;
};

class MarkupDocumentTitle : public MarkupExportElement {
public:
    using MarkupExportElement::MarkupExportElement;
    std::string ExportValue(Node* node, ExportTemplate* exportTemplate) override;
};

// ^get(attribute, format)^ and ^getfor(note, attribute, format)^.
class MarkupGetAttribute : public MarkupExportElement {
public:
    MarkupGetAttribute(std::string name, std::string arguments, bool withNote);
    std::string ExportValue(Node* node, ExportTemplate* exportTemplate) override;
    double AsNumber(Node* node, ExportTemplate* exportTemplate) override;
    bool Eval(Node* node, ExportTemplate* exportTemplate) override;

private:
    Node* Target(Node* node, ExportTemplate* exportTemplate);
    std::string Attribute(Node* node, ExportTemplate* exportTemplate) const;
    bool withNote;
};

class MarkupVersion : public MarkupExportElement {
public:
    using MarkupExportElement::MarkupExportElement;
    std::string ExportValue(Node* node, ExportTemplate* exportTemplate) override;
};

// ^today(format)^, ^created(note, format)^, ^modified(note, format)^.
class MarkupDate : public MarkupExportElement {
public:
    MarkupDate(std::string name, std::string arguments, std::string attribute);
    std::string ExportValue(Node* node, ExportTemplate* exportTemplate) override;
    double AsNumber(Node* node, ExportTemplate* exportTemplate) override;

private:
    STime Date(Node* node, ExportTemplate* exportTemplate, std::string& format);
    std::string attribute;  // empty: now
};

// The note's creator, file name, path, directory, address and host.
class MarkupNoteInfo : public MarkupNodeRelative {
public:
    enum Kind { kCreator, kFile, kPath, kDirectory, kHost };
    MarkupNoteInfo(std::string name, std::string arguments, Kind kind);
    std::string ExportValue(Node* node, ExportTemplate* exportTemplate) override;

private:
    Kind kind;
};

// ^url(note)^, and the fixed forms ^parenturl^, ^nextsibling^ ...
class MarkupURL : public MarkupNodeRelative {
public:
    using MarkupNodeRelative::MarkupNodeRelative;
    std::string ExportValue(Node* node, ExportTemplate* exportTemplate) override;
};

class MarkupRoot : public MarkupNodeRelative {
public:
    using MarkupNodeRelative::MarkupNodeRelative;
    std::string ExportValue(Node* node, ExportTemplate* exportTemplate) override;
};

class MarkupSetRoot : public MarkupExportElement {
public:
    using MarkupExportElement::MarkupExportElement;
    std::string ExportValue(Node* node, ExportTemplate* exportTemplate) override;
};

class MarkupSectionNumber : public MarkupNodeRelative {
public:
    using MarkupNodeRelative::MarkupNodeRelative;
    std::string ExportValue(Node* node, ExportTemplate* exportTemplate) override;
};

// ^indent(string, expression)^: the string repeated.
class MarkupIndent : public MarkupExportElement {
public:
    using MarkupExportElement::MarkupExportElement;
    std::string ExportValue(Node* node, ExportTemplate* exportTemplate) override;
};

class MarkupComment : public MarkupExportElement {
public:
    using MarkupExportElement::MarkupExportElement;
    std::string ExportValue(Node* node, ExportTemplate* exportTemplate) override;
};

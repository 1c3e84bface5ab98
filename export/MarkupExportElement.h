#pragma once
// The named elements of the template language (^title^, ^value(...)^,
// ^include(...)^ ...): the shared base and its intermediate kinds. The
// elements themselves are grouped by family in the Markup*.h headers;
// `Create` makes one from its name.
#include <memory>
#include <string>
#include <vector>

#include "ArgList.h"
#include "ExportElement.h"
#include "NodeVector.h"

class Exporter;
class Link;
class Transformer;

class MarkupExportElement : public ExportElement {
public:
    MarkupExportElement(std::string name, std::string arguments);

    // The element for `name`; an unknown name gives the literal caret form
    // ("^ name(arguments)"). "if" reads its blocks from `reader`.
    static ExportElement* Create(const std::string& name, const std::string& arguments, bool hasArguments,
                                 TemplateReader& reader, int depth);

    int Export(std::ostream& stream, Node* node, ExportTemplate* exportTemplate, ExportView* view) override;
    std::string ExportValue(Node* node, ExportTemplate* exportTemplate) override { return std::string(); }

    // The note a name leads to: "" the note itself, "current" the page
    // being exported, "source" and "destination" the ends of the link being
    // listed, else a path. Not found: null when strict, else the note.
    virtual Node* GetNodeNamed(Node* node, const std::string& name, ExportTemplate* exportTemplate, bool strict);
    virtual Node* GetNodeNamed(Node* node, Node* scope, const std::string& name, ExportTemplate* exportTemplate,
                               bool strict);
    virtual bool CanBeExported(Node* node) const;
    virtual bool AlreadyIncluded(Node* node, ExportTemplate* exportTemplate) const;
    virtual Node* GetCurrentNode(ExportTemplate* exportTemplate) const;
    virtual bool IsExported(Node* node) const;
    // The next exportable note in that direction inside `within`'s subtree.
    virtual Node* Next(Node* node, Node* within) const;
    virtual Node* Previous(Node* node, Node* within) const;
    virtual Node* NextSibling(Node* node) const;
    virtual Node* PrevSibling(Node* node) const;
    virtual bool EncodeEntities(Node* node) const;
    virtual bool UsingEntities(ExportTemplate* exportTemplate) const;
    virtual std::string EntityFilter(const std::string& text, Node* node, ExportTemplate* exportTemplate);
    // A template named from a note (a template note, or a built-in
    // template); null when there is none. The caller owns it.
    virtual std::unique_ptr<ExportTemplate> LoadExportTemplate(const std::string& name, Node* node, Node* current,
                                                               ExportTemplate* exportTemplate);
    virtual std::unique_ptr<ExportTemplate> LoadExportTemplate(Node* node, ExportTemplate* exportTemplate);
    // Text holding "^" expanded as a template for the note; the expansion
    // nests at most 20 deep in the whole process.
    static std::string EvaluateArgument(const std::string& text, Node* node, ExportTemplate* exportTemplate);
    virtual void Including(Node* node, ExportTemplate* exportTemplate);
    static std::string TrimQuotes(const std::string& text);
    virtual std::string URLFor(Node* node, ExportTemplate* exportTemplate);

    const std::string& Name() const { return name; }
    const std::string& Arguments() const { return arguments; }
    static constexpr int kMaxEvaluationNesting = 20;

protected:
    // The i-th comma argument as written, or "".
    std::string Arg(size_t i) const;
    size_t ArgCount() const { return args.size(); }
    // The i-th argument quote-trimmed and expanded.
    std::string EvaluatedArg(size_t i, Node* node, ExportTemplate* exportTemplate) const;

    std::string name;
    std::string arguments;
    ArgList args;
};

// The first argument names the note (absent: the note being expanded).
class MarkupNodeRelative : public MarkupExportElement {
public:
    using MarkupExportElement::MarkupExportElement;
    virtual Node* GetNode(Node* node, ExportTemplate* exportTemplate, bool strict);
    bool Eval(Node* node, ExportTemplate* exportTemplate) override;
};

// The argument text is parsed into child elements; the value is " true " or
// " false ".
class MarkupPredicate : public MarkupExportElement {
public:
    MarkupPredicate(std::string name, std::string arguments);
    std::string ExportValue(Node* node, ExportTemplate* exportTemplate) override;
};

// Each comma argument is parsed into a child element of its own.
class MarkupWithArgumentList : public MarkupExportElement {
public:
    MarkupWithArgumentList(std::string name, std::string arguments);
    std::string ExportValue(Node* node, ExportTemplate* exportTemplate) override;

protected:
    // The value of the i-th argument's element, or "".
    std::string Value(size_t i, Node* node, ExportTemplate* exportTemplate);
};

// Lists: prefix, item prefix, item suffix, suffix; "default" reads the
// note's own list strings.
class MarkupList : public MarkupNodeRelative {
public:
    MarkupList(std::string name, std::string arguments);
    // The arguments of a list are its strings: the list is always the
    // note's own.
    Node* GetNode(Node* node, ExportTemplate* exportTemplate, bool strict) override { return node; }

protected:
    std::string Part(size_t i, Node* node) const;
    // `<a href="U"` with the link's class, title and target, then ">".
    std::string ExportLink(const std::string& url, const Link* link) const;
    std::string parts[4];
};

class MarkupGroup : public MarkupExportElement {
public:
    using MarkupExportElement::MarkupExportElement;

protected:
    NodeVector Choose(Node* node, ExportTemplate* exportTemplate);
};

class MarkupFilter : public MarkupExportElement {
public:
    MarkupFilter(std::string name, std::string arguments, std::unique_ptr<Transformer> transformer);
    ~MarkupFilter() override;
    std::string ExportValue(Node* node, ExportTemplate* exportTemplate) override;
    bool Eval(Node* node, ExportTemplate* exportTemplate) override;

private:
    std::unique_ptr<Transformer> transformer;
};

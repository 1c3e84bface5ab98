#pragma once
// The parsed form of an export template: a tree of elements that expands
// against a note into text.
//
// A template is text in which "^" introduces elements: ^title^,
// ^value($Name)^, ^if(...)^ ... ^else^ ... ^endif^. `FromString` reads the
// text once into a tree of `ExportElement`s; `ExportValue` expands the tree
// for one note. Nothing here throws to the caller: every failure shows as
// text in the output.
#include <atomic>
#include <functional>
#include <iosfwd>
#include <memory>
#include <string>
#include <vector>

class ExportTemplate;
class MatchList;
class Node;

// Watches an expansion element by element (the preview); may be null.
class ExportView {
public:
    virtual ~ExportView() = default;
    virtual void Exported(const class ExportElement* element, const std::string& value) = 0;
};

class ExportElement {
public:
    // Type codes.
    enum { kPlain = 0, kMarkupText = 1, kIncludeChildrenHere = 2, kInclude = 3, kLiteral = 4 };
    // Ifs nested deeper than this while parsing are read as plain elements
    // without blocks, so that runaway nesting cannot exhaust the stack.
    static constexpr int kMaxParseDepth = 200;

    ExportElement();
    virtual ~ExportElement();
    ExportElement(const ExportElement&) = delete;
    ExportElement& operator=(const ExportElement&) = delete;

    virtual void Apply(const std::function<void(ExportElement*)>& block) const;
    // Takes ownership; a null child is ignored.
    virtual void Add(ExportElement* child);
    virtual bool IsElse() const { return false; }
    virtual bool IsEndif() const { return false; }
    virtual bool HasElse() const;
    virtual int Type() const { return kPlain; }
    // The element as a condition: with no children true, else the first
    // child's answer.
    virtual bool Eval(Node* node, ExportTemplate* exportTemplate);
    // Writes the children's values; stops at the first child that answers a
    // non-zero code.
    virtual int Export(std::ostream& stream, Node* node, ExportTemplate* exportTemplate, ExportView* view);
    // The concatenated values of the children.
    virtual std::string ExportValue(Node* node, ExportTemplate* exportTemplate);
    // The attributed form serves the preview only; this system's preview is
    // plain text, so it is the same text.
    virtual std::string NSExportValue(Node* node, ExportTemplate* exportTemplate);
    // The first non-zero number among the children.
    virtual double AsNumber(Node* node, ExportTemplate* exportTemplate);
    virtual void AddTrueClause(ExportElement* clause);
    virtual void AddFalseClause(ExportElement* clause);
    virtual size_t Count() const { return children.size(); }
    virtual ExportElement* at(size_t i) const { return i < children.size() ? children[i].get() : nullptr; }
    // Hands the children over to the caller.
    std::vector<std::unique_ptr<ExportElement>> TakeChildren() { return std::move(children); }
    // The template's match list with CurrentExport set to the exporting note.
    virtual MatchList& GetMatchList(ExportTemplate* exportTemplate);
    // Without leading and trailing white space and newlines.
    static std::string Trim(const std::string& text);
    // An attribute name given as an argument: trimmed, without a leading "$".
    static std::string AttributeName(const std::string& text);

    // Parses template text into a new tree (owned by the caller).
    static std::unique_ptr<ExportElement> FromString(const std::string& text);

    // Live elements of the process.
    static long LiveCount() { return sLive.load(); }
    // The nesting of template text expanded from inside a template
    // (EvaluateArgument). Once it reaches its limit it stays there: the
    // limit, once reached, holds for the rest of the process.
    static std::atomic<int>& EvaluationNesting();

protected:
    std::vector<std::unique_ptr<ExportElement>> children;

private:
    static std::atomic<long> sLive;
};

// A run of text. Its value is the text; as a condition it reads the text
// as an attribute name, a path or action code.
class LiteralElement : public ExportElement {
public:
    explicit LiteralElement(std::string text) : text(std::move(text)) {}
    int Type() const override { return kLiteral; }
    bool Eval(Node* node, ExportTemplate* exportTemplate) override;
    std::string ExportValue(Node* node, ExportTemplate* exportTemplate) override;
    int Export(std::ostream& stream, Node* node, ExportTemplate* exportTemplate, ExportView* view) override;
    const std::string& Text() const { return text; }
    void Append(const std::string& more) { text += more; }

private:
    std::string text;
};

// The reader of template text. Grammar:
//   template  := (literal | element)*
//   literal   := characters up to a single "^"; "^^" is one "^"
//   element   := "^" name ["^"] ["(" arguments ")" ["^"]]
// A caret before white space drops both. Names are letters, digits and "_",
// read in lower case. Arguments keep nested parentheses and quoted text
// whole; a backslash keeps itself and the next character.
class TemplateReader {
public:
    explicit TemplateReader(const std::string& text) : text(text) {}

    // Reads elements into `parent` to the end, or (with `inBlock`) through
    // the first else or endif; answers that element, or null at the end.
    ExportElement* ReadInto(ExportElement* parent, bool inBlock, int depth);
    // Reads the blocks of an if element: its true clause and, when that
    // ended at an else, its false clause.
    void ReadIf(ExportElement* ifElement, int depth);

    // The text inside balanced parentheses, the stream being just after the
    // "("; "unclosed parenthesis" and false at the end of the text.
    bool ReadParenthesised(std::string& arguments);
    const std::string& Error() const { return error; }

    bool AtEnd() const { return at >= text.size(); }

private:
    std::string ReadLiteral();
    ExportElement* ReadElement(int depth);

    const std::string& text;
    size_t at = 0;
    std::string error;
};

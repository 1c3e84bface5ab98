#pragma once
// One template in use: the parsed tree and everything an expansion needs
// around it (the exporter that names files, the note being exported, the
// link being listed, the include counts that stop runaway includes).
//
// A template made inside another (an include, a per-note template) has that
// one as its parent: include counts live in the outermost template, and the
// exporting note is inherited.
#include <iosfwd>
#include <map>
#include <memory>
#include <string>

#include "ExportElement.h"
#include "HTMLMarkup.h"
#include "MatchList.h"

class Exporter;
class Link;
class LinkIndex;
class Node;

// The text links met while exporting, kept per export (shared by the
// templates of one run).
class LinkIndex {
public:
    void Clear() { count = 0; }
    int Next() { return ++count; }

private:
    int count = 0;
};

// The template is also the host of the note text markup (HTMLMarkup): it
// gives the addresses of text links and the names of pictures.
class ExportTemplate : public HTMLMarkupHost {
public:
    // A note may be included this many times in one expansion.
    static constexpr int kMaxIncludes = 90;
    // Templates nested deeper than this (a chain of includes through many
    // different notes) end as a circular include: the stack stays bounded.
    static constexpr int kMaxTemplateDepth = 100;

    ExportTemplate(const std::string& text, Exporter* exporter, ExportTemplate* parent);
    ExportTemplate(Node* note, Exporter* exporter, ExportTemplate* parent);
    ~ExportTemplate() override;
    ExportTemplate(const ExportTemplate&) = delete;
    ExportTemplate& operator=(const ExportTemplate&) = delete;

    virtual bool IsValid() const { return valid; }
    // Expands the template for `node`, `exportingNode` being the page being
    // written, into the stream.
    virtual int Export(std::ostream& stream, Node* node, Node* exportingNode, ExportView* view = nullptr);
    // The expansion as a string.
    std::string ExportString(Node* node, Node* exportingNode);
    virtual std::string EntityFilter(const std::string& text, Node* node);
    virtual ExportElement* GetRoot() const { return root.get(); }
    virtual Node* ExportingNode() const { return exportingNode; }
    virtual void SetExportingNode(Node* n) { exportingNode = n; }
    virtual bool ExportAuxFile(Node* node, const std::string& text);
    // The note's text as HTML (or plain text when not exporting HTML), cut
    // at `limit` characters when above 0.
    virtual std::string DoTextMarkup(Node* node, int limit);
    virtual const std::string& GetName() const { return name; }
    virtual void SetName(const std::string& n) { name = n; }
    virtual bool AlreadyIncluded(const Node* node);
    virtual void Including(const Node* node);
    virtual void UseEntities(bool use) { useEntities = use; }
    virtual bool UseEntities() const { return useEntities; }
    virtual void ForLink(const Link* link) { currentLink = link; }
    virtual const Link* ForLink() const { return currentLink; }
    virtual Exporter* GetExporter() const { return exporter; }
    virtual bool ExportingTextFrom(const Node* node) const;
    virtual std::string URLFor(Node* target, Node* current);
    virtual std::string LinkURLFor(Node* node);
    virtual std::string LinkURLFor(Node* node, Node* current);
    virtual std::string HostFor(Node* node);
    virtual bool HasChildLinks() const;
    bool HasTextLinks() const override;
    // The markup's view of the template.
    bool LinkIndexEntry(const Node* original, LinkBundle& links) const override { return false; }
    std::string LinkURLFor(const Node* target, const Node* current) const override;
    std::string ImageFileName(const Node* note, int index) const override;
    void WriteImageFile(const Node* note, int index, const std::string& fileName,
                        const std::string& data) const override;
    std::vector<std::string> MacroOpenings() const override { return {}; }
    const CodeGenerator::Lookup* CodeLookup(const Node* note) const override;
    virtual bool HasLinkNames() const;
    virtual bool HasBasicLinks() const;
    virtual std::string AuxFileName(Node* node);
    virtual std::string ImageFileName(Node* node, int index);
    virtual std::string ImageLocalFileName(Node* node, int index);
    virtual std::string RootPath() const;
    virtual void RootPath(const std::string& path);
    virtual bool Exporting() const;
    virtual std::string FileNameFor(Node* node);
    virtual std::string NameOfFile(Node* node);
    virtual std::string GetExportFolder() const;
    virtual void Matches(const MatchList& list) { matches = list; }
    virtual MatchList& Matches() { return matches; }
    virtual std::string ParseTemplate(const std::string& text, Node* node) { return ProcessExportElements(text, node); }
    // Expands text of a note's own (its marked-up text holding elements)
    // with that note recorded as the text being expanded.
    virtual std::string ProcessExportElements(const std::string& text, Node* node);
    virtual LinkIndex* GetLinkIndex() const { return linkIndex; }
    virtual void SetLinkIndex(LinkIndex* index) { linkIndex = index; }
    virtual bool ExportTheFile(const std::string& file);
    virtual bool ExportingHTML() const;
    virtual std::string DoPlainTextMarkup(Node* node, int limit);
    // The text holds template elements.
    static bool IsTemplate(const std::string& text);

    // The template a name leads to from `from`: a template note found by
    // path, else a built-in template of that name; null when neither.
    static std::unique_ptr<ExportTemplate> Named(const std::string& name, Node* from, Exporter* exporter,
                                                 ExportTemplate* parent);
    // Entity encoding of text for HTML output.
    static std::string EncodeEntityText(const std::string& text, bool keepAmpersands, bool encodeAngles);

    // The template whose expansion runs on this thread now, or null.
    // Templates made from inside it (exportedString from action code) join
    // its include counts, so that a template reaching itself through code
    // ends as surely as one that includes itself.
    static ExportTemplate* Running();

    ExportTemplate* Parent() const { return parent; }
    int Depth() const { return depth; }
    const std::string& AuxText() const { return auxText; }

private:
    ExportTemplate* Outermost();
    void Build(const std::string& text);

    std::unique_ptr<ExportElement> root;
    Exporter* exporter = nullptr;
    ExportTemplate* parent = nullptr;
    bool valid = false;
    bool useEntities = true;
    std::string name;
    std::string auxText;
    std::map<const Node*, int> includes;
    const Node* textSource = nullptr;
    Node* exportingNode = nullptr;
    const Link* currentLink = nullptr;
    MatchList matches;
    LinkIndex* linkIndex = nullptr;
    int depth = 0;
    // The code generator's attributes, looked up once for all the pages.
    mutable CodeGenerator::Lookup codeLookup;
};

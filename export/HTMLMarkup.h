#pragma once
// One note's styled text as HTML (or Markdown): styles, links, pictures,
// paragraphs and lists become tags at character positions of an HTMLCode,
// which then writes the text with the tags in place.
//
// What the markup needs from the export that runs it comes through
// HTMLMarkupHost, so that this layer does not depend on the template engine.
// A null host means no text links between notes and no pictures.
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "CodeGenerator.h"

#include "HTMLCode.h"
#include "LinkBundle.h"
#include "StyledText.h"

class CodeGenerator;
class HTMLMarkupParagraphList;
class HTMLMarkupParagraph;
class Node;

class HTMLMarkupHost {
public:
    virtual ~HTMLMarkupHost() = default;
    // Whether the export marks text links between notes.
    virtual bool HasTextLinks() const = 0;
    // The links of `original` in the export's link index. False when the
    // export has no index (the note's own outbound text links are used then).
    virtual bool LinkIndexEntry(const Node* original, LinkBundle& links) const = 0;
    // The address a link to `target` has in the page of `current`; an empty
    // address leaves the link unmarked.
    virtual std::string LinkURLFor(const Node* target, const Node* current) const = 0;
    // The file name the picture at `index` of the note is written under.
    virtual std::string ImageFileName(const Node* note, int index) const = 0;
    // Writes the picture's bytes under that name, inside the export folder.
    virtual void WriteImageFile(const Node* note, int index, const std::string& fileName, const std::string& data) const = 0;
    // The openings of the document's template macros (a paragraph whose
    // first three characters are those of one is left without tags).
    virtual std::vector<std::string> MacroOpenings() const = 0;
    // The paragraph tags the export uses for paragraph `index` of the note;
    // by default the note's own first-paragraph or paragraph strings.
    virtual std::string OpenParagraphMarkup(const Node* note, int index, char16_t c) const;
    virtual std::string CloseParagraphMarkup(const Node* note, int index, char16_t c) const;
    // The code generator's attributes as looked up in the note's document,
    // kept by a host that marks up many notes; null to look them up by name.
    virtual const CodeGenerator::Lookup* CodeLookup(const Node* note) const { return nullptr; }
};

class HTMLMarkup {
public:
    // `note` is the note whose text is marked up, `exportingNode` the note
    // whose page it goes into (links are relative to it). `limit` cuts the
    // text at that many characters when above 0; `markdown` asks for
    // Markdown (as does the note's "HTMLMarkdown").
    HTMLMarkup(Node* note, Node* exportingNode, const HTMLMarkupHost* host, long limit = 0, bool markdown = false);
    virtual ~HTMLMarkup();
    HTMLMarkup(const HTMLMarkup&) = delete;
    HTMLMarkup& operator=(const HTMLMarkup&) = delete;

    // The finished HTML or Markdown.
    virtual std::string ToString();
    virtual Node* GetExportedNode() const { return exportingNode; }
    virtual Node* GetNode() const { return note; }

    // Tag placement (used by the code generators).
    virtual void Add(const HTMLMarkupTag& tag, bool atEnd);
    virtual void Enclose(int start, int end, const std::string& open, const std::string& close);
    virtual void Insert(int start, int end, const std::string& open, const std::string& close);
    // The same with a skip count on the opening tag.
    void Enclose(int start, int end, const std::string& open, const std::string& close, int skip);

    virtual bool ListsAreEnabled() const;
    virtual void AddList(int start, int end, char16_t character);
    virtual void AddListItem(int start, int end, int level, bool ordered);
    virtual bool IsProse() const;
    virtual void AddParagraphMarkup(const HTMLMarkupParagraph& paragraph, int index);
    virtual void AddTextLinks();
    virtual void AddWebLinks();

    bool IsMarkdown() const { return markdown; }
    // Marks the text up as if the note's "HTMLEntities" were `on`, without
    // reading it (ToString encodes the text itself when it is on).
    void SetEntities(bool on) { entities = on; }
    const HTMLMarkupHost* GetHost() const { return host; }
    const StyledText& GetStyledText() const { return styled; }
    const std::u16string& Text() const { return styled.Unicode(); }
    int End() const { return code ? code->End() : 0; }
    // The heading or paragraph tags given to paragraph `index` (see ParagraphMarkup).
    void ParagraphMarkup(const HTMLMarkupParagraph& paragraph, int index);
    // The host's macro openings (none without a host).
    const std::vector<std::u16string>& MacroOpenings() const { return macroOpenings; }
    // The size of the text of [start, end) if all of it has one size, else
    // the note's text size.
    double ConstantFontSize(int start, int end) const;

    // The most levels a list nests; deeper items count as this deep.
    static constexpr int kMaxListLevel = 32;

protected:
    virtual void Init();
    virtual void AddParagraphs();
    virtual void FindParagraphs();
    virtual void AssembleParagraphs();
    virtual void Finish();
    virtual void AddImages();
    virtual void AddImage(int index);
    virtual std::u16string GetText() const;
    virtual void AddBoldMarkup();
    virtual void AddItalicMarkup();
    virtual void AddUnderlineMarkup();
    virtual void AddStrikeMarkup();
    virtual void AddCodeMarkup();
    virtual void ExportImageFile(int index, const std::string& fileName);

private:
    // Calls `mark` for each longest stretch of runs for which `has` holds.
    template <typename Has, typename Mark>
    void ForEachStretch(Has has, Mark mark);

    Node* note;
    Node* exportingNode;
    const HTMLMarkupHost* host;
    long limit;
    bool markdown;
    StyledText styled;
    std::unique_ptr<HTMLCode> code;
    std::unique_ptr<CodeGenerator> generator;
    std::unique_ptr<HTMLMarkupParagraphList> paragraphs;
    std::vector<std::u16string> macroOpenings;
    std::string result;
    std::optional<bool> entities;
    bool done = false;
};

#pragma once
// Drivers that write one file: the whole document through one template
// (an OPML file), the outline (as text or RTF), or one note's expansion.
#include <string>

#include "Exporter.h"
#include "StyledText.h"

class TextExporter : public Exporter {
public:
    // `format` is a built-in template name ("opml", "outline"); a template
    // note "/Templates/<format>" of the document (any case of the first
    // letter written as "OPML" or "Outline") comes first.
    TextExporter(Hypertext* hypertext, std::string format);
    bool UseHTML() const override { return false; }
    void LoadTemplate() override;
    // The whole document's expansion (the template applied to the root).
    std::string ExportedString();
    // Writes the expansion to `path`; false with `error` set on failure.
    virtual bool ExportToPath(const std::string& path, std::string& error);
    const std::string& Format() const { return format; }

protected:
    // The document's own template note for the format, or null.
    Node* OwnTemplateNote() const;

    std::string format;
};

// The outline as attributed text: one paragraph per exported note holding its
// title, indented by its depth; top-level titles bold, a note coloured on its
// own in its colour. Written as RTF to a path ending in ".rtf", otherwise as
// text with a tab per level.
class OutlineExporter : public TextExporter {
public:
    // The left indent that each level of depth adds, in twips: half an inch.
    static constexpr int kIndentStep = 720;
    // Deeper notes keep the indent of this depth.
    static constexpr int kMaxIndentLevels = 1000;
    // The text form writes tabs up to this many levels; deeper paragraphs
    // start at the margin, as the outline template's indent does.
    static constexpr int kMaxTabbedLevels = 100;

    explicit OutlineExporter(Hypertext* hypertext);
    ~OutlineExporter() override;

    // Appends the paragraphs of `note` (at `depth`, 0 for a top-level note)
    // and of its descendants, a level deeper per generation, in outline
    // order. A note that makes no page has no paragraph, but its
    // descendants still have theirs.
    void TextListFor(Node* note, int depth, StyledText& text);
    // The character style of a note's title.
    TextStyle StyleFor(Node* note, int depth) const;
    // The paragraph's left indent at `depth`, in twips.
    static int Indents(int depth);

    // The whole document's outline.
    StyledText OutlineText();
    // The outline as text: each paragraph after a tab per level of its
    // indent.
    static std::string PlainText(const StyledText& outline);
    static bool IsRTFPath(const std::string& path);

    // RTF for a path ending in ".rtf" (any case); otherwise the text form,
    // or the expansion of the template this run or the document chose.
    bool ExportToPath(const std::string& path, std::string& error) override;

private:
    // TextListFor's paragraphs, added to `characters` and `runs`.
    void GatherParagraphs(Node* note, int depth, std::u16string& characters, std::vector<StyleRun>& runs);
    // The title as the outline template writes it.
    std::string TitleOf(Node* note);
    // Whether a template (chosen for this run, or the document's
    // "/Templates/Outline") replaces the text form.
    bool HasOwnTemplate() const;

    std::unique_ptr<ExportTemplate> titleTemplate;
};

// One note's expansion, with the default template, into one file.
class SingleNoteExporter : public Exporter {
public:
    SingleNoteExporter(Hypertext* hypertext, Node* note) : Exporter(hypertext), note(note) {}
    bool ExportToPath(const std::string& path, std::string& error);

private:
    Node* note;
};

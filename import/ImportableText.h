#pragma once
// Plain text, pasted or read from a file, and what kind of text it is: RIS
// records, a table, cards, OPML, a tab-indented outline, or else one note.
#include <string>
#include <string_view>

#include "Importable.h"

class ImportableText : public Importable {
public:
    enum class Kind { Any, RIS, Spreadsheet, CSV, TSV, VCard, OPML, Outline, TaskPaper, Freemind, Plain };

    // `kind` other than Any reads the text as that kind only.
    explicit ImportableText(std::string text, Kind kind = Kind::Any) : text(std::move(text)), kind(kind) {}

    // Tries each kind in turn; the first that accepts the text makes the
    // notes.
    bool ImportSelf(ImportManager& manager) override;

    // The kind a text would be read as, with the extension of its file ("" for
    // pasted text). Makes no notes.
    static Kind Recognize(std::string_view text, const std::string& extension);
    // The kind for a format name ("opml", "freemind", "csv", "tsv",
    // "outline", "taskpaper", "vcard", "ris", "text"); false when unknown.
    static bool KindNamed(const std::string& name, Kind& kind);
    // A comma comes before any tab: the line is comma-separated.
    static bool HasCommaBeforeTab(std::string_view line);

    // Each answers whether it took the text; a text it took but could not
    // read leaves the failure with the manager.
    bool TryRIS(ImportManager& manager);
    bool TrySpreadsheet(ImportManager& manager);
    bool TryVCard(ImportManager& manager);
    bool TryOPML(ImportManager& manager);
    bool TryTabbedText(ImportManager& manager);
    bool TryTaskPaper(ImportManager& manager);
    bool TryFreemind(ImportManager& manager);
    bool ImportPlain(ImportManager& manager);

private:
    // A container for the notes under the target: named after the file, or
    // `otherwise` for pasted text.
    Node* MakeContainer(ImportManager& manager, const std::string& otherwise);
    std::string LowerExtension() const;

    std::string text;
    Kind kind;
};

#pragma once
// Drivers that write one file: the whole document through one template
// (an OPML file, a text outline), or one note's expansion.
#include <string>

#include "Exporter.h"

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
    bool ExportToPath(const std::string& path, std::string& error);
    const std::string& Format() const { return format; }

protected:
    std::string format;
};

// The text outline: each note's title indented by its depth.
class OutlineExporter : public TextExporter {
public:
    explicit OutlineExporter(Hypertext* hypertext) : TextExporter(hypertext, "outline") {}
};

// One note's expansion, with the default template, into one file.
class SingleNoteExporter : public Exporter {
public:
    SingleNoteExporter(Hypertext* hypertext, Node* note) : Exporter(hypertext), note(note) {}
    bool ExportToPath(const std::string& path, std::string& error);

private:
    Node* note;
};

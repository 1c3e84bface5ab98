#include "TextExporter.h"

#include "HTMLExportSaver.h"
#include "HTExportPath.h"
#include "Hypertext.h"
#include "MatchList.h"
#include "Node.h"
#include "NodeFacade.h"
#include "NodeHelpers.h"
#include "STemplateFile.h"

TextExporter::TextExporter(Hypertext* hypertext, std::string format) : Exporter(hypertext), format(std::move(format)) {}

void TextExporter::LoadTemplate() {
    if (DefaultTemplate())
        return;
    Node* root = HypertextFacade(hypertext).Root();
    std::string shown = format == "opml" ? "OPML" : format == "outline" ? "Outline" : format;
    MatchList matches;
    Node* own = root ? HTExportPath("/Templates/" + shown).Get(root, matches) : nullptr;
    if (own && NodeFacade(own).IsTemplate())
        SetTemplateText(NodeText(own).GetText());
    else
        SetTemplateText(STemplateFile::BuiltInTemplate(format));
}

std::string TextExporter::ExportedString() {
    LoadTemplate();
    Node* root = HypertextFacade(hypertext).Root();
    if (!root)
        return std::string();
    total = CountExportedNotes();
    return DefaultTemplate()->ExportString(root, root);
}

bool TextExporter::ExportToPath(const std::string& path, std::string& error) {
    return SaveIfChanged(path, ExportedString(), error);
}

bool SingleNoteExporter::ExportToPath(const std::string& path, std::string& error) {
    return SaveIfChanged(path, ExportOne(note), error);
}

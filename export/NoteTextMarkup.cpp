#include "NoteTextMarkup.h"

#include "ExportTemplate.h"
#include "Exporter.h"
#include "HTMLEncoder.h"
#include "HTMLMarkup.h"
#include "Node.h"

std::string NoteTextMarkup::EscapeText(const std::string& text, bool keepAmpersands, bool encodeAngles) {
    return HTMLEncoder::EntityFilter(text, keepAmpersands, encodeAngles);
}

std::string NoteTextMarkup::ToHTML(Node* node, ExportTemplate* exportTemplate, int limit) {
    if (!node)
        return std::string();
    bool markdown = exportTemplate && exportTemplate->GetExporter() && exportTemplate->GetExporter()->Markdown();
    HTMLMarkup markup(node, exportTemplate ? exportTemplate->ExportingNode() : node, exportTemplate, limit, markdown);
    // The markup encodes the text itself: it runs as if the note's
    // "HTMLEntities" were off, and the note is left as it is (setting and
    // restoring the value would count as two changes to the document).
    markup.SetEntities(false);
    return markup.ToString();
}

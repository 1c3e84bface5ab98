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
    bool hadLocal = node->Properties().Has(node->GetAttribute("HTMLEntities"));
    bool entities = node->GetBoolean("HTMLEntities");
    if (entities)
        node->SetBoolean("HTMLEntities", false);
    std::string html;
    {
        bool markdown = exportTemplate && exportTemplate->GetExporter() && exportTemplate->GetExporter()->Markdown();
        HTMLMarkup markup(node, exportTemplate ? exportTemplate->ExportingNode() : node, exportTemplate, limit,
                          markdown);
        html = markup.ToString();
    }
    if (entities) {
        if (hadLocal)
            node->SetBoolean("HTMLEntities", true);
        else
            node->Remove("HTMLEntities");
    }
    return html;
}

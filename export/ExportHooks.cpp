#include "ExportHooks.h"

#include <mutex>

#include "Exporter.h"
#include "Hooks.h"
#include "Node.h"
#include "NodeExport.h"

void InstallExportHooks() {
    static std::once_flag once;
    std::call_once(once, [] {
        Hooks& hooks = EditHooks();
        hooks.exportFileName = [](const Node* note) { return NodeExport(note).ExportFileName(); };
        hooks.exportedString = [](Node* note, const std::string& templateName) -> std::string {
            if (!note)
                return std::string();
            // Expansion in memory: file names are the notes' own.
            DummyHTMLExporter exporter(note->GetHypertext());
            std::unique_ptr<ExportTemplate> chosen = ExportTemplate::Named(templateName, note, &exporter, nullptr);
            if (!chosen)
                return std::string();
            chosen->SetLinkIndex(exporter.GetLinkIndex());
            return chosen->ExportString(note, note);
        };
    });
}

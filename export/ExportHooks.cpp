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
            // Inside a running expansion the template joins it (its
            // exporter and include counts); otherwise it expands in memory,
            // with the notes' own file names.
            ExportTemplate* running = ExportTemplate::Running();
            DummyHTMLExporter exporter(note->GetHypertext());
            Exporter* use = running && running->GetExporter() ? running->GetExporter() : &exporter;
            std::unique_ptr<ExportTemplate> chosen = ExportTemplate::Named(templateName, note, use, running);
            if (!chosen)
                return std::string();
            if (!running)
                chosen->SetLinkIndex(exporter.GetLinkIndex());
            if (chosen->AlreadyIncluded(note))
                return std::string();
            chosen->Including(note);
            return chosen->ExportString(note, running ? running->ExportingNode() : note);
        };
    });
}

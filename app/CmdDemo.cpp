// `rylvane demo`: opens the sample document that comes with the program and
// prints its outline: each note with its prototype, its links, and a word on
// its text. With --export DIR it also exports the document as a site of HTML
// pages (the built-in "html" template) and prints the page to open first.
#include <iostream>

#include "ActionHooks.h"
#include "Commands.h"
#include "ExportHooks.h"
#include "HTMLExporter.h"
#include "Content.h"
#include "DocumentFile.h"
#include "Hypertext.h"
#include "Link.h"
#include "Node.h"
#include "NodeHelpers.h"
#include "NodeLinks.h"

namespace {

void PrintOutline(const Node* node, int depth) {
    for (const Node* n = node->Son(); n; n = n->Brother()) {
        std::cout << std::string(static_cast<size_t>(depth) * 2, ' ') << n->Name();
        std::string notes;
        auto add = [&notes](const std::string& part) { notes += (notes.empty() ? "" : ", ") + part; };
        if (n->IsAlias())
            add("alias");
        if (n->GetBoolean("IsPrototype"))
            add("prototype");
        if (const Node* prototype = n->GetPrototype(); prototype && !n->IsAlias())
            add("prototype " + prototype->Name());
        LinkBundle out = NodeLinks(n).OutboundLinks().OmitPrototypes();
        for (const Link* link : out)
            add(link->Name() + " link to " + (link->IsWebLink() ? link->URL() : link->DestNode()->Name()));
        NodeText text(n);
        if (n->IsAlias())
            ;
        else if (text.HasRTFD())
            add("styled text with " + std::to_string(text.PictureCount()) + " picture(s)");
        else if (text.HasRTF())
            add("styled text");
        else if (text.HasText())
            add(std::to_string(text.WordCount()) + " words of text");
        if (!notes.empty())
            std::cout << "  (" << notes << ")";
        std::cout << "\n";
        PrintOutline(n, depth + 1);
    }
}

int ExportSite(Hypertext* document, const std::string& folder) {
    InstallActionHooks();
    InstallExportHooks();
    HTMLExporter exporter(document, folder);
    exporter.ChooseTemplate("html");
    if (!exporter.Export(true) || !exporter.Error().empty())
        return CommandFailure(exporter.Error().empty() ? std::string("export failed") : exporter.Error());
    Node* first = document->Root()->Son();
    while (first && !exporter.CanExport(first))
        first = first->Brother();
    std::cout << "\nexported " << exporter.Written() + exporter.Unchanged() << " files; open "
              << folder + "/" + exporter.FileNameFor(first) << "\n";
    return 0;
}

int RunDemo(const std::string& exportFolder) {
    std::string path = std::string(RYLVANE_SAMPLES) + "/demo.ryl";
    std::string error;
    auto hypertext = OpenDocument(path, error);
    if (!hypertext)
        return CommandFailure(error);
    std::cout << path << "\n";
    PrintOutline(hypertext->Root(), 0);
    if (!exportFolder.empty())
        return ExportSite(hypertext.get(), exportFolder);
    return 0;
}

CommandRegistration registration(
    "demo",
    [](CLI::App& app, CommandResult& result) {
        auto folder = std::make_shared<std::string>();
        auto* cmd = app.add_subcommand("demo", "Open the sample document, print its outline and export it as HTML pages");
        cmd->add_option("--export", *folder, "Also export the sample document as HTML pages to this folder");
        cmd->callback([&result, folder] { result.code = RunDemo(*folder); });
    },
    10);

} // namespace

// `rylvane demo`: opens the sample document that comes with the program and
// prints its outline: each note with its prototype, its links, and a word on
// its text.
#include <iostream>

#include "Commands.h"
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

int RunDemo() {
    std::string path = std::string(RYLVANE_SAMPLES) + "/demo.ryl";
    std::string error;
    auto hypertext = OpenDocument(path, error);
    if (!hypertext)
        return CommandFailure(error);
    std::cout << path << "\n";
    PrintOutline(hypertext->Root(), 0);
    return 0;
}

CommandRegistration registration(
    "demo",
    [](CLI::App& app, CommandResult& result) {
        auto* cmd = app.add_subcommand("demo", "Open the sample document and print its outline");
        cmd->callback([&result] { result.code = RunDemo(); });
    },
    10);

} // namespace

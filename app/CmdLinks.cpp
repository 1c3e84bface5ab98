// `rylvane links FILE PATH`: the links of a note, one a line: outbound ones
// as "-> destination (type)", inbound ones as "<- source (type)". A text
// link adds its anchor text in brackets; a web link shows its URL.
#include <iostream>

#include "Commands.h"
#include "DocumentFile.h"
#include "DocumentSession.h"
#include "Hypertext.h"
#include "Link.h"
#include "Node.h"
#include "NodeLinks.h"

namespace {

struct LinksState {
    std::string file;
    std::string path;
};

void PrintLink(const Link* link, bool outbound) {
    std::cout << (outbound ? "-> " : "<- ");
    if (outbound)
        std::cout << LineSafe(link->IsWebLink() ? link->URL() : PathOfNote(link->DestNode()));
    else
        std::cout << LineSafe(PathOfNote(link->SourceNode()));
    std::cout << " (" << LineSafe(link->Name()) << ")";
    if (link->IsTextLink())
        std::cout << " [" << LineSafe(link->AnchorText()) << "]";
    std::cout << "\n";
}

int RunLinks(const LinksState& state) {
    std::string error;
    auto session = DocumentSession::Open(state.file, false, error);
    if (!session)
        return CommandFailure(error);
    Node* node = session->Note(state.path, error);
    if (!node)
        return CommandFailure(error);
    NodeLinks links(node);
    for (const Link* link : links.OutboundLinks())
        PrintLink(link, true);
    for (const Link* link : links.InboundLinks())
        PrintLink(link, false);
    return 0;
}

CommandRegistration registration(
    "links",
    [](CLI::App& app, CommandResult& result) {
        auto state = std::make_shared<LinksState>();
        auto* cmd = app.add_subcommand("links", "List the links of a note");
        cmd->add_option("FILE", state->file, "The document file")->required();
        cmd->add_option("PATH", state->path, "The note, such as /Projects/Ideas")->required();
        cmd->callback([&result, state] { result.code = RunLinks(*state); });
    },
    28);

} // namespace

// `rylvane link FILE FROM TO [--type TYPE]`: links one note to another.
#include "Commands.h"
#include "DocumentSession.h"
#include "Hypertext.h"
#include "Link.h"
#include "LinkType.h"
#include "Node.h"
#include "NodeLinks.h"

namespace {

struct LinkState {
    std::string file;
    std::string from;
    std::string to;
    std::string type = LinkType::kUntitled;
};

int RunLink(const LinkState& state) {
    std::string error;
    auto session = DocumentSession::Open(state.file, true, error);
    if (!session)
        return CommandFailure(error);
    Node* from = session->Note(state.from, error);
    if (!from)
        return CommandFailure(error);
    Node* to = session->Note(state.to, error);
    if (!to)
        return CommandFailure(error);
    if (state.type.empty())
        return CommandFailure(state.file + ": a link type needs a name");
    if (state.type == LinkType::kPrototype)
        return CommandFailure(state.file + ": prototypes are set with `set PATH Prototype NAME`");
    if (!NodeLinks(from).CreateLink(to, state.type))
        return CommandFailure(state.file + ": " + state.from + " cannot be linked to " + state.to);
    if (!session->Save(error))
        return CommandFailure(error);
    return 0;
}

CommandRegistration registration(
    "link",
    [](CLI::App& app, CommandResult& result) {
        auto state = std::make_shared<LinkState>();
        auto* cmd = app.add_subcommand("link", "Link one note to another");
        cmd->add_option("FILE", state->file, "The document file")->required();
        cmd->add_option("FROM", state->from, "The source note")->required();
        cmd->add_option("TO", state->to, "The destination note")->required();
        cmd->add_option("--type", state->type, "The link type (default *untitled)");
        cmd->callback([&result, state] { result.code = RunLink(*state); });
    },
    27);

} // namespace

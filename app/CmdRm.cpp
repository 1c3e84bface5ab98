// `rylvane rm FILE PATH`: deletes a note with its descendants and links.
#include "AgentHooks.h"
#include "Commands.h"
#include "DocumentSession.h"
#include "Hypertext.h"
#include "Node.h"
#include "NodeHelpers.h"

namespace {

struct RmState {
    std::string file;
    std::string path;
};

int RunRm(const RmState& state) {
    InstallAgentHooks();
    std::string error;
    auto session = DocumentSession::Open(state.file, true, error);
    if (!session)
        return CommandFailure(error);
    Hypertext* hypertext = session->Document();
    Node* node = session->Note(state.path, error);
    if (!node)
        return CommandFailure(error);
    if (node == hypertext->Root())
        return CommandFailure(state.file + ": the root cannot be deleted");
    NodeDeleter(node).Delete();
    if (!session->Save(error))
        return CommandFailure(error);
    return 0;
}

CommandRegistration registration(
    "rm",
    [](CLI::App& app, CommandResult& result) {
        auto state = std::make_shared<RmState>();
        auto* cmd = app.add_subcommand("rm", "Delete a note with its descendants");
        cmd->add_option("FILE", state->file, "The document file")->required();
        cmd->add_option("PATH", state->path, "The note, such as /Projects/Ideas")->required();
        cmd->callback([&result, state] { result.code = RunRm(*state); });
    },
    25);

} // namespace

// `rylvane mv FILE PATH NEWPARENT`: moves a note to the end of another note's children.
#include "AgentHooks.h"
#include "Commands.h"
#include "DocumentFile.h"
#include "DocumentSession.h"
#include "Hypertext.h"
#include "Node.h"
#include "NodeHelpers.h"

namespace {

struct MvState {
    std::string file;
    std::string path;
    std::string parent;
};

int RunMv(const MvState& state) {
    InstallAgentHooks();
    std::string error;
    auto session = DocumentSession::Open(state.file, true, error);
    if (!session)
        return CommandFailure(error);
    Hypertext* hypertext = session->Document();
    Node* node = session->Note(state.path, error);
    if (!node)
        return CommandFailure(error);
    Node* parent = session->Note(state.parent, error);
    if (!parent)
        return CommandFailure(error);
    if (node == hypertext->Root())
        return CommandFailure(state.file + ": the root cannot be moved");
    if (parent->IsDescendedFrom(node))
        return CommandFailure(state.file + ": " + state.path + " cannot move into itself");
    if (!parent->CanReceiveChildren())
        return CommandFailure(state.file + ": " + state.parent + " cannot hold notes");
    if (!session->CanHoldDepth(DepthOfNote(parent) + 1 + HeightOfNote(node), error))
        return CommandFailure(error);
    Node* last = parent->YoungestSon();
    if (last != node)
        NodePosition(node).DoMoveTo(parent, last);
    if (!session->Save(error))
        return CommandFailure(error);
    return 0;
}

CommandRegistration registration(
    "mv",
    [](CLI::App& app, CommandResult& result) {
        auto state = std::make_shared<MvState>();
        auto* cmd = app.add_subcommand("mv", "Move a note under another note");
        cmd->add_option("FILE", state->file, "The document file")->required();
        cmd->add_option("PATH", state->path, "The note to move")->required();
        cmd->add_option("NEWPARENT", state->parent, "Its new parent, such as /Archive")->required();
        cmd->callback([&result, state] { result.code = RunMv(*state); });
    },
    26);

} // namespace

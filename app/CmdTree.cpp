// `rylvane tree FILE [PATH]`: the outline of a document, or of one note and
// its descendants, two blanks of indent per level.
#include <iostream>

#include "Commands.h"
#include "DocumentFile.h"
#include "DocumentSession.h"
#include "Hypertext.h"
#include "Node.h"

namespace {

struct TreeState {
    std::string file;
    std::string path;
};

void PrintNote(const Node* node, int depth) {
    std::cout << std::string(static_cast<size_t>(depth) * 2, ' ') << LineSafe(node->Name());
    if (node->IsAlias())
        std::cout << " (alias)";
    std::cout << "\n";
}

void PrintChildren(const Node* node, int depth) {
    for (const Node* child = node->Son(); child; child = child->Brother()) {
        if (child->IsHidden())
            continue;
        PrintNote(child, depth);
        PrintChildren(child, depth + 1);
    }
}

int RunTree(const TreeState& state) {
    std::string error;
    auto session = DocumentSession::Open(state.file, false, error);
    if (!session)
        return CommandFailure(error);
    Hypertext* hypertext = session->Document();
    if (state.path.empty() || state.path == "/") {
        PrintChildren(hypertext->Root(), 0);
        return 0;
    }
    Node* node = session->Note(state.path, error);
    if (!node)
        return CommandFailure(error);
    PrintNote(node, 0);
    PrintChildren(node, 1);
    return 0;
}

CommandRegistration registration(
    "tree",
    [](CLI::App& app, CommandResult& result) {
        auto state = std::make_shared<TreeState>();
        auto* cmd = app.add_subcommand("tree", "Print the outline of a document or of one note");
        cmd->add_option("FILE", state->file, "The document file")->required();
        cmd->add_option("PATH", state->path, "A note, such as /Projects/Ideas");
        cmd->callback([&result, state] { result.code = RunTree(*state); });
    },
    21);

} // namespace

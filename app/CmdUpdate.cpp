// `rylvane update FILE`: brings a document up to date the way a manual
// update does (every agent once, then every edict), and then runs every
// rule once from top to bottom, so that a batch run leaves the document as
// a settled one would be. Prints each agent's path and result count, one
// per line; saves when anything changed and leaves the file alone otherwise.
#include <iostream>
#include <sstream>

#include "Agent.h"
#include "AgentHooks.h"
#include "AgentManager.h"
#include "Commands.h"
#include "DocumentFile.h"
#include "DocumentSession.h"
#include "DocumentUpdate.h"
#include "Hypertext.h"
#include "TalvikWriter.h"

namespace {

struct UpdateState {
    std::string file;
};

// The document as it would be saved: two equal texts are the same document.
std::string Written(Hypertext* document) {
    std::ostringstream out;
    TalvikWriter(document).Write(out);
    return out.str();
}

int RunUpdate(const UpdateState& state) {
    InstallAgentHooks();
    std::string error;
    auto session = DocumentSession::Open(state.file, true, error);
    if (!session)
        return CommandFailure(error);
    Hypertext* document = session->Document();
    std::string before = Written(document);
    UpdateDocument(document);
    bool changed = Written(document) != before;
    for (Agent* agent : AgentManager::For(document)->Agents())
        std::cout << LineSafe(PathOfNote(agent->GetNode())) << "\t" << agent->ResultCount() << "\n";
    if (changed && !session->Save(error))
        return CommandFailure(error);
    return 0;
}

CommandRegistration registration(
    "update",
    [](CLI::App& app, CommandResult& result) {
        auto state = std::make_shared<UpdateState>();
        auto* cmd = app.add_subcommand(
            "update", "Run every agent, every edict and every rule once; save if anything changed; print each "
                      "agent's path and result count (tab-separated)");
        cmd->add_option("FILE", state->file, "The document file")->required();
        cmd->callback([&result, state] { result.code = RunUpdate(*state); });
    },
    63);

}  // namespace

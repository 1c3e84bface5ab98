// `rylvane agents FILE`: each agent of a document, one per line: its path,
// its query, its priority and how many notes it holds, tab-separated.
#include <iostream>

#include "Agent.h"
#include "AgentHooks.h"
#include "AgentManager.h"
#include "Commands.h"
#include "DocumentFile.h"
#include "DocumentSession.h"
#include "Node.h"

namespace {

struct AgentsState {
    std::string file;
};

int RunAgents(const AgentsState& state) {
    InstallAgentHooks();
    std::string error;
    auto session = DocumentSession::Open(state.file, false, error);
    if (!session)
        return CommandFailure(error);
    for (Agent* agent : AgentManager::For(session->Document())->Agents()) {
        Node* note = agent->GetNode();
        std::cout << LineSafe(PathOfNote(note)) << "\t" << LineSafe(note->GetString("AgentQuery")) << "\t" << agent->Priority() << "\t"
                  << agent->ResultCount() << "\n";
    }
    return 0;
}

CommandRegistration registration(
    "agents",
    [](CLI::App& app, CommandResult& result) {
        auto* cmd = app.add_subcommand(
            "agents", "List the agents: path, query, priority and result count (tab-separated)");
        auto state = std::make_shared<AgentsState>();
        cmd->add_option("FILE", state->file, "The document file")->required();
        cmd->callback([&result, state] { result.code = RunAgents(*state); });
    },
    62);

}  // namespace

// `rylvane find FILE QUERY`: the path of every note, in outline order, for
// which a query of action code holds, tested the way an agent tests its
// query. `--count` prints only how many there are.
#include <iostream>

#include "ActionHooks.h"
#include "Commands.h"
#include "DocumentFile.h"
#include "DocumentSession.h"
#include "NoteQuery.h"

namespace {

struct FindState {
    std::string file;
    std::string query;
    bool count = false;
    bool ignoreCase = false;
};

int RunFind(const FindState& state) {
    InstallActionHooks();
    std::string error;
    auto session = DocumentSession::Open(state.file, false, error);
    if (!session)
        return CommandFailure(error);
    NoteQuery query(state.query, !state.ignoreCase);
    NodeVector found = query.FindAll(session->Document());
    if (state.count) {
        std::cout << found.size() << "\n";
        return 0;
    }
    for (Node* note : found)
        std::cout << LineSafe(PathOfNote(note)) << "\n";
    return 0;
}

CommandRegistration registration(
    "find",
    [](CLI::App& app, CommandResult& result) {
        auto state = std::make_shared<FindState>();
        auto* cmd = app.add_subcommand("find", "Print the path of every note for which a query holds");
        cmd->add_option("FILE", state->file, "The document file")->required();
        cmd->add_option("QUERY", state->query, "The query, such as '$Color==\"red\" & $Width>2'")->required();
        cmd->add_flag("--count", state->count, "Print only the number of notes found");
        cmd->add_flag("--ignore-case,-i", state->ignoreCase,
                      "Read the query with case sensitivity off (as an agent whose AgentCaseSensitive is false)");
        cmd->callback([&result, state] { result.code = RunFind(*state); });
    },
    62);

}  // namespace

// `rylvane similar FILE PATH [--count N]`: the notes whose words are most
// like those of a note, best first, one "PATH<TAB>SCORE" line each.
#include <cstdio>
#include <iostream>

#include "Commands.h"
#include "DocumentFile.h"
#include "DocumentSession.h"
#include "Hypertext.h"
#include "LynxUpdater.h"
#include "Node.h"
#include "NodeIndexing.h"

namespace {

struct SimilarState {
    std::string file;
    std::string path;
    size_t count = 10;
};

int RunSimilar(const SimilarState& state) {
    std::string error;
    auto session = DocumentSession::Open(state.file, false, error);
    Node* node = session ? session->Note(state.path, error) : nullptr;
    if (!node)
        return CommandFailure(error);
    LynxUpdater index(session->Document());
    index.IndexAll();
    if (!NodeIndexing(node).GetLynx())
        index.IndexNow(node);
    for (const LynxRecord& record : NodeIndexing(node).MostSimilar(state.count)) {
        char score[32];
        std::snprintf(score, sizeof score, "%.4f", record.score);
        std::cout << LineSafe(PathOfNote(record.node)) << "\t" << score << "\n";
    }
    return 0;
}

CommandRegistration registration(
    "similar",
    [](CLI::App& app, CommandResult& result) {
        auto state = std::make_shared<SimilarState>();
        auto* cmd = app.add_subcommand("similar", "The notes most similar to a note, with their scores");
        cmd->add_option("FILE", state->file, "The document file")->required();
        cmd->add_option("PATH", state->path, "The note, such as /Projects/Ideas")->required();
        cmd->add_option("--count", state->count, "How many notes at most (default 10)")
            ->check(CLI::Range(1, 100000));
        cmd->callback([&result, state] { result.code = RunSimilar(*state); });
    },
    50);

} // namespace

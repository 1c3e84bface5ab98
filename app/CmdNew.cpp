// `rylvane new FILE`: makes an empty document.
#include <filesystem>

#include "Commands.h"
#include "DocumentFile.h"
#include "Hypertext.h"

namespace {

struct NewState {
    std::string file;
};

int RunNew(const NewState& state) {
    std::error_code code;
    if (std::filesystem::exists(state.file, code))
        return CommandFailure(state.file + ": already exists");
    auto hypertext = NewDocument(state.file);
    std::string error;
    if (!SaveDocument(hypertext.get(), state.file, error))
        return CommandFailure(error);
    return 0;
}

CommandRegistration registration(
    "new",
    [](CLI::App& app, CommandResult& result) {
        auto state = std::make_shared<NewState>();
        auto* cmd = app.add_subcommand("new", "Make a new, empty document");
        cmd->add_option("FILE", state->file, "The document file to make")->required();
        cmd->callback([&result, state] { result.code = RunNew(*state); });
    },
    20);

} // namespace

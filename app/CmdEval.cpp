// `rylvane eval FILE PATH EXPR`: the text form of an expression of action
// code evaluated on a note, with the note as `that`. `--type` adds the
// type of the result on a second line.
#include <iostream>

#include "AAValue.h"
#include "Action.h"
#include "CommandTrust.h"
#include "ActionHooks.h"
#include "AttributeType.h"
#include "Commands.h"
#include "DocumentSession.h"
#include "MatchList.h"

namespace {

struct EvalState {
    std::string file;
    std::string path;
    std::string expression;
    bool type = false;
    bool allowCommands = false;
};

std::string TypeWord(int code) {
    switch (code) {
    case AttributeType::kNone: return "none";
    case AttributeType::kUnsigned: return "unsigned";
    case AttributeType::kAction: return "action";
    case AttributeType::kFont: return "font";
    default: return AttributeType::TypeStringFor(code);
    }
}

int RunEval(const EvalState& state) {
    CommandTrust::Allow(state.allowCommands);
    InstallActionHooks();
    std::string error;
    auto session = DocumentSession::Open(state.file, false, error);
    Node* note = session ? session->Note(state.path, error) : nullptr;
    if (!note)
        return CommandFailure(error);
    AAValuePtr tree = Action::ParseExpression(state.expression, true);
    MatchList matches;
    matches.CurrentThat(note);
    std::cout << AAValue::ComputeValue(tree.get(), note, matches).AsString() << "\n";
    if (state.type)
        std::cout << TypeWord(tree ? tree->ResultType(note, matches) : AttributeType::kNone) << "\n";
    return 0;
}

CommandRegistration registration(
    "eval",
    [](CLI::App& app, CommandResult& result) {
        auto state = std::make_shared<EvalState>();
        auto* cmd = app.add_subcommand("eval", "Print the value of an expression of action code on a note");
        cmd->add_option("FILE", state->file, "The document file")->required();
        cmd->add_option("PATH", state->path, "The note, such as /Projects/Ideas")->required();
        cmd->add_option("EXPR", state->expression, "The expression, such as '$ChildCount * 2'")->required();
        cmd->add_flag("--type", state->type, "Print the type of the result on a second line");
        cmd->add_flag("--allow-commands", state->allowCommands,
                      "Let the document's code run outside programs (runCommand, the backtick, .tr)");
        cmd->callback([&result, state] { result.code = RunEval(*state); });
    },
    60);

}  // namespace

// rylvane parse [--statements] [--case-insensitive] CODE: prints how action
// code is read, as an indented tree with one node per line.
#include <memory>
#include <string>

#include "Action.h"
#include "ActionTreeDump.h"
#include "AgentActionExpressionParser.h"
#include "Commands.h"

namespace {

struct ParseOptions {
    bool statements = false;
    bool caseInsensitive = false;
    std::string code;
};

int RunParse(const ParseOptions& options) {
    if (options.statements) {
        std::unique_ptr<Action> action = Action::Create(options.code);
        std::cout << ActionTreeDump::Statements(*action);
    } else {
        std::string error;
        AAValuePtr tree = AgentActionExpressionParser::Parse(options.code, !options.caseInsensitive, &error);
        std::cout << ActionTreeDump::Expression(tree.get());
        // The tree stands as read; a problem met on the way is shown last.
        if (!error.empty())
            std::cout << "error: " << error << "\n";
    }
    std::cout.flush();
    return 0;
}

CommandRegistration parseCommand(
    "parse",
    [](CLI::App& app, CommandResult& result) {
        auto options = std::make_shared<ParseOptions>();
        auto* cmd = app.add_subcommand("parse", "Print how action code is read, as a tree of nodes");
        cmd->add_flag("--statements,-s", options->statements,
                      "Read the code as a list of statements (actions, rules) instead of one expression");
        cmd->add_flag("--case-insensitive,-i", options->caseInsensitive,
                      "Read with case sensitivity off: pattern queries such as Name(x) ignore case");
        cmd->add_option("code", options->code, "Action code, e.g. '$A = 1 + 2 * 3' (use -- before code that starts with -)")
            ->required();
        cmd->callback([&result, options] { result.code = RunParse(*options); });
    },
    70);

}  // namespace

// `rylvane functions [--family NAME]`: every function and dot operator of
// action code, one a line: the spelling (dot operators with their dot), a
// tab, the family, and a tab and "service" for those that answer false or ""
// here for want of a platform service.
#include <iostream>
#include <set>
#include <string>

#include "Commands.h"
#include "ElementTables.h"
#include "FunctionFamilies.h"

namespace {

struct FunctionsState {
    std::string family;
};

void PrintRow(const std::string& spelling, bool dot, const FunctionFamilyRow* row, const std::string& family) {
    const char* name = row ? row->family : "unknown";
    if (!family.empty() && family != name)
        return;
    std::cout << (dot ? "." : "") << spelling << "\t" << name << (row && row->service ? "\tservice" : "") << "\n";
}

int RunFunctions(const FunctionsState& state) {
    if (!state.family.empty()) {
        bool known = false;
        for (const char* name : FunctionFamilies::Names())
            known = known || state.family == name;
        if (!known)
            return CommandFailure("no family named \"" + state.family + "\"");
    }
    // The spellings come from the parser's own tables, so that none is
    // missed; the special forms the parser reads by hand follow.
    std::set<std::pair<bool, std::string>> listed;
    for (const FunctionEntry& entry : FunctionTable()) {
        PrintRow(entry.spelling, false, FunctionFamilies::Find(entry.spelling, false), state.family);
        listed.emplace(false, entry.spelling);
    }
    for (const FunctionFamilyRow& row : FunctionFamilies::Rows())
        if (!row.dot && !listed.count({false, row.spelling}))
            PrintRow(row.spelling, false, &row, state.family);
    for (const DotOperatorEntry& entry : DotOperatorTable())
        PrintRow(entry.name, true, FunctionFamilies::Find(entry.name, true), state.family);
    return 0;
}

CommandRegistration registration(
    "functions",
    [](CLI::App& app, CommandResult& result) {
        auto state = std::make_shared<FunctionsState>();
        auto* cmd = app.add_subcommand("functions", "List the functions and dot operators of action code by family");
        cmd->add_option("--family", state->family,
                        "Only this family: numeric, date, colour, string, list, group, note test, link, note, "
                        "evaluation, system, information, format, composite, word");
        cmd->callback([&result, state] { result.code = RunFunctions(*state); });
    },
    65);

}  // namespace

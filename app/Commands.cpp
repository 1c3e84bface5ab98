#include "Commands.h"

#include <algorithm>
#include <vector>

namespace {

struct Entry {
    std::string name;
    CommandSetup setup;
    int order;
};

std::vector<Entry>& Registry() {
    static std::vector<Entry> entries;
    return entries;
}

} // namespace

CommandRegistration::CommandRegistration(const std::string& name, CommandSetup setup, int order) {
    Registry().push_back({name, std::move(setup), order});
}

int CommandFailure(const std::string& message) {
    std::cerr << "rylvane: " << message << std::endl;
    return 1;
}

int RunRylvane(int argc, char** argv) {
    CLI::App app{"rylvane: a hypertext notebook whose documents are alive"};
    app.set_version_flag("--version", std::string("rylvane ") + RYLVANE_VERSION);
    app.require_subcommand(0, 1);
    app.fallthrough(false);

    CommandResult result;
    auto entries = Registry();
    std::stable_sort(entries.begin(), entries.end(),
                     [](const Entry& a, const Entry& b) { return a.order < b.order; });
    for (auto& entry : entries)
        entry.setup(app, result);

    try {
        app.parse(argc, argv);
    } catch (const CLI::ParseError& e) {
        // Help and the version are answers; anything else is wrong use,
        // reported as the one line of a failure.
        if (e.get_exit_code() == static_cast<int>(CLI::ExitCodes::Success))
            return app.exit(e);
        return CommandFailure(std::string(e.what()) + " (see rylvane --help)");
    }
    if (app.get_subcommands().empty()) {
        std::cout << app.help();
        return 0;
    }
    return result.code;
}

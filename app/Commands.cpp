#include "Commands.h"

#include <algorithm>
#include <cstdlib>
#include <random>
#include <cerrno>
#include <cstdio>
#include <cctype>
#include <cstring>
#include <vector>

#include "LynxUpdater.h"

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

// Whether a word of the command line begins with "-" but names no option
// of the program: a value that the parser took for an option because no
// "--" came before it.
bool HasValueLikeOption(CLI::App& app, int argc, char** argv) {
    std::vector<CLI::Option*> options = app.get_options();
    for (CLI::App* command : app.get_subcommands([](CLI::App*) { return true; }))
        for (CLI::Option* option : command->get_options())
            options.push_back(option);
    for (int i = 1; i < argc; ++i) {
        std::string word = argv[i];
        if (word == "--")
            return false;
        if (word.size() < 2 || word[0] != '-')
            continue;
        std::string name = word.substr(0, word.find('='));
        if (std::none_of(options.begin(), options.end(), [&](const CLI::Option* o) { return o->check_name(name); }))
            return true;
    }
    return false;
}

// Flushes what the command printed; false when it could not all be written
// (a full disk, a closed pipe or descriptor), with `error` set.
bool FlushOutput(std::string& error) {
    std::cout.flush();
    bool bad = !std::cout;
    errno = 0;
    if (std::fflush(stdout) != 0 || std::ferror(stdout))
        bad = true;
    if (bad)
        error = std::string("cannot write the output") + (errno ? std::string(": ") + std::strerror(errno) : "");
    return !bad;
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
    app.footer("Output is one value or one item a line. A name that holds a control character (such as a line "
               "break) or begins with a double quote is printed in double quotes, with \\n, \\r, \\t, \\\", "
               "\\\\ and \\xHH for such characters. A value that begins with \"-\" needs \"--\" before it.");

    // Action code of any command may ask the word indexes (word, similarTo).
    InstallTextHooks();
    // rand() in action code and random picks in templates draw from the C
    // library's generator: each run starts it afresh.
    std::srand(std::random_device{}());

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
        std::string hint = HasValueLikeOption(app, argc, argv)
                               ? " (a value that begins with \"-\" needs \"--\" before it, as in: set FILE PATH ATTR -- -3)"
                               : " (see rylvane --help)";
        return CommandFailure(std::string(e.what()) + hint);
    }
    if (app.get_subcommands().empty())
        std::cout << app.help();
    // What was printed must have reached its destination for the answer to count.
    std::string error;
    if (!FlushOutput(error)) {
        CommandFailure(error);
        return 1;
    }
    return result.code;
}

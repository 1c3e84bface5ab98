#include "Commands.h"

#include <iostream>
#include <string>

#include <CLI/CLI.hpp>

int RunRylvane(int argc, char** argv) {
    CLI::App app{"rylvane: a hypertext notebook whose documents are alive"};
    app.set_version_flag("--version", std::string("rylvane ") + RYLVANE_VERSION);
    app.require_subcommand(0, 1);
    app.fallthrough(false);

    try {
        app.parse(argc, argv);
    } catch (const CLI::ParseError& e) {
        return app.exit(e);
    }
    if (app.get_subcommands().empty()) {
        std::cout << app.help();
        return 0;
    }
    return 0;
}

#pragma once
// The git-style subcommands of `rylvane`. Each command prints plain text on
// stdout, one value or one line per item; a failure is one line on stderr and
// a non-zero exit.
//
// Each command lives in its own source file and registers itself with a
// static CommandRegistration, so that adding a command touches no other file:
//
//   static CommandRegistration reg("tree", [](CLI::App& app, CommandResult& result) {
//       auto* cmd = app.add_subcommand("tree", "Print the outline of a document");
//       ... add options bound to variables owned by the lambda's state ...
//       cmd->callback([&result, state] { result.code = RunTree(*state); });
//   });
#include <functional>
#include <iostream>
#include <string>

#include <CLI/CLI.hpp>

struct CommandResult {
    int code = 0;
};

using CommandSetup = std::function<void(CLI::App&, CommandResult&)>;

class CommandRegistration {
public:
    // `order` sorts the commands in `rylvane --help`; lower comes first.
    CommandRegistration(const std::string& name, CommandSetup setup, int order = 100);
};

// Prints "rylvane: <message>" on stderr and answers 1: the one line a failed
// command leaves.
int CommandFailure(const std::string& message);

int RunRylvane(int argc, char** argv);

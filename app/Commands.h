#pragma once
// The git-style subcommands of `rylvane`. Each command prints plain text on
// stdout, one value or one line per item; a failure is one line on stderr and
// a non-zero exit.

int RunRylvane(int argc, char** argv);

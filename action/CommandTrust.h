#pragma once
// Outside programs run from action code (`runCommand`, the backtick form,
// `.tr`). A document is code from whoever wrote it, so such commands run
// only when the user allowed them for this run (`--allow-commands`). A
// refused command answers "" and is reported once per command text on
// stderr, naming the note.
#include <string>

class Node;

class CommandTrust {
public:
    // The process-wide switch; off until the command line turns it on.
    static void Allow(bool allowed);
    static bool Allowed();

    // Runs `command` with /bin/sh in `directory` ("~" and "" mean the home
    // folder), `input` on its standard input; answers its standard output.
    // Refused: "" and the one-line report.
    static std::string Run(const Node* note, const std::string& command, const std::string& input,
                           const std::string& directory);

    // Forgets which refusals were reported (for tests).
    static void ResetReports();
};

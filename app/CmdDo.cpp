// `rylvane do FILE PATH ACTION`: applies action code to a note and saves
// the document when anything changed. `--dry-run` prints what would change,
// one line per value: the note, the attribute, the old and the new text.
#include <iostream>
#include <map>

#include "Action.h"
#include "CommandTrust.h"
#include "ActionHooks.h"
#include "AgentHooks.h"
#include "Attribute.h"
#include "Commands.h"
#include "DocumentFile.h"
#include "DocumentSession.h"
#include "Hypertext.h"
#include "MatchList.h"
#include "Node.h"
#include "NodeFacade.h"
#include "NodeHelpers.h"
#include "Value.h"

namespace {

struct DoState {
    std::string file;
    std::string path;
    std::string action;
    bool dryRun = false;
    bool allowCommands = false;
};

// What every note holds of its own, by note and attribute name. The
// modification date is left out: it changes whenever anything else does.
using Snapshot = std::map<Node*, std::map<std::string, std::string>>;

Snapshot TakeSnapshot(Hypertext* document) {
    Snapshot snapshot;
    HypertextFacade(document).Apply([&snapshot](Node* note) {
        auto& values = snapshot[note];
        for (const auto& [attribute, value] : note->Properties()) {
            if (attribute && value && attribute->Name() != "Modified")
                values[attribute->Name()] = value->AsXML();
        }
        values["Text"] = NodeText(note).GetText();
    });
    return snapshot;
}

struct ValueChange {
    Node* note;
    std::string attribute;
    std::string before;
    std::string after;
};

std::vector<ValueChange> Differences(const Snapshot& before, const Snapshot& after) {
    std::vector<ValueChange> changes;
    static const std::map<std::string, std::string> none;
    for (const auto& [note, values] : after) {
        auto old = before.find(note);
        const auto& oldValues = old == before.end() ? none : old->second;
        for (const auto& [name, text] : values) {
            auto it = oldValues.find(name);
            std::string was = it == oldValues.end() ? std::string() : it->second;
            if (was != text)
                changes.push_back({note, name, was, text});
        }
        for (const auto& [name, text] : oldValues) {
            if (!values.count(name))
                changes.push_back({note, name, text, std::string()});
        }
    }
    return changes;
}

int RunDo(const DoState& state) {
    CommandTrust::Allow(state.allowCommands);
    InstallActionHooks();
    InstallAgentHooks();
    std::string error;
    auto session = DocumentSession::Open(state.file, !state.dryRun, error);
    Node* note = session ? session->Note(state.path, error) : nullptr;
    if (!note)
        return CommandFailure(error);
    Snapshot before = TakeSnapshot(session->Document());
    MatchList matches;
    matches.CurrentThat(note);
    Action::Do(note, matches, state.action);
    std::vector<ValueChange> changes = Differences(before, TakeSnapshot(session->Document()));
    if (state.dryRun) {
        for (const ValueChange& change : changes)
            std::cout << LineSafe(PathOfNote(change.note)) << "\t" << change.attribute << "\t" << LineSafe(change.before) << " → "
                      << LineSafe(change.after) << "\n";
        return 0;
    }
    if (!changes.empty() && !session->Save(error))
        return CommandFailure(error);
    return 0;
}

CommandRegistration registration(
    "do",
    [](CLI::App& app, CommandResult& result) {
        auto state = std::make_shared<DoState>();
        auto* cmd = app.add_subcommand("do", "Apply action code to a note and save the document if it changed");
        cmd->add_option("FILE", state->file, "The document file")->required();
        cmd->add_option("PATH", state->path, "The note, such as /Projects/Ideas")->required();
        cmd->add_option("ACTION", state->action, "Action code, such as '$Count = $Count + 1; $Color = \"red\"'")
            ->required();
        cmd->add_flag("--dry-run,-n", state->dryRun,
                      "Change nothing; print each value that would change: note, attribute, old -> new (tab-separated)");
        cmd->add_flag("--allow-commands", state->allowCommands,
                      "Let the document's code run outside programs (runCommand, the backtick, .tr)");
        cmd->callback([&result, state] { result.code = RunDo(*state); });
    },
    61);

}  // namespace

// `rylvane set FILE PATH ATTR VALUE`: sets an attribute of a note from text
// read the way the attribute's type reads what a user types: numbers with
// separators ("1,250"), dates as free text, sets, lists, colours by name.
// `--` before VALUE lets it begin with "-".
#include <iostream>

#include "Attribute.h"
#include "AgentHooks.h"
#include "Commands.h"
#include "DocumentSession.h"
#include "Hypertext.h"
#include "Node.h"
#include "Props.h"

namespace {

struct SetState {
    std::string file;
    std::string path;
    std::string attribute;
    std::string value;
};

int RunSet(const SetState& state) {
    InstallAgentHooks();
    std::string error;
    auto session = DocumentSession::Open(state.file, true, error);
    if (!session)
        return CommandFailure(error);
    Node* node = session->Note(state.path, error);
    if (!node)
        return CommandFailure(error);
    const Attribute* attribute = session->AttributeNamed(state.attribute, error);
    if (!attribute)
        return CommandFailure(error);
    if (!attribute->IsValid() || !attribute->IsEditable())
        return CommandFailure(state.file + ": the attribute " + attribute->Name() + " cannot be set");
    node->Set(attribute, state.value);
    if (!session->Save(error))
        return CommandFailure(error);
    return 0;
}

CommandRegistration registration(
    "set",
    [](CLI::App& app, CommandResult& result) {
        auto state = std::make_shared<SetState>();
        auto* cmd = app.add_subcommand("set", "Set an attribute of a note");
        cmd->add_option("FILE", state->file, "The document file")->required();
        cmd->add_option("PATH", state->path, "The note, such as /Projects/Ideas")->required();
        cmd->add_option("ATTR", state->attribute, "The attribute, such as Color")->required();
        cmd->add_option("VALUE", state->value, "The value as text (put -- before a value that begins with -)")
            ->required();
        cmd->callback([&result, state] { result.code = RunSet(*state); });
    },
    24);

} // namespace

// `rylvane set FILE PATH ATTR VALUE`: sets an attribute of a note from text
// read the way the attribute's type reads what a user types: numbers with
// separators ("1,250"), dates as free text, sets, lists, colours by name.
// `--` before VALUE lets it begin with "-".
#include <iostream>

#include "Attribute.h"
#include "AgentHooks.h"
#include "Commands.h"
#include "DocumentFile.h"
#include "DocumentSession.h"
#include "Hypertext.h"
#include "Node.h"
#include "NodeIndex.h"
#include "Props.h"
#include "Prototypes.h"
#include "UnicodeString.h"

namespace {

struct SetState {
    std::string file;
    std::string path;
    std::string attribute;
    std::string value;
};

// Whether the note named `state.value` (found as the Prototype attribute
// finds it) may become the prototype of `node`; the model refuses the others
// without a word, so the reason is told here.
bool CheckPrototype(const DocumentSession& session, Node* node, const SetState& state, std::string& error) {
    NodeIndex* index = session.Document()->GetIndex();
    Node* found = index ? index->FindPrototype(state.value) : nullptr;
    if ((!found || found->IsHidden()) && index)
        found = index->Find(state.value);
    const std::string& file = session.File();
    if (!found || found->IsHidden()) {
        error = file + ": no note named " + LineSafe(state.value) + " to be the prototype";
        return false;
    }
    Node* prototype = found->GetOriginal();
    if (prototype == node->GetOriginal()) {
        error = file + ": " + LineSafe(state.path) + " cannot be its own prototype";
        return false;
    }
    if (!NodeInheritance(node).CanBePrototype(prototype)) {
        error = file + ": " + LineSafe(state.value) + " cannot be the prototype of " + LineSafe(state.path) +
                ": its prototypes lead back to it";
        return false;
    }
    return true;
}

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
    if (attribute->Name() == "Name" && !UnicodeString::IsValidUTF8(state.value))
        return CommandFailure(state.file + ": the name is not valid UTF-8");
    if (attribute->Name() == "Prototype" && !state.value.empty() && !CheckPrototype(*session, node, state, error))
        return CommandFailure(error);
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

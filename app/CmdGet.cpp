// `rylvane get FILE PATH ATTR`: the text form of one attribute of a note.
#include <iostream>

#include "Attribute.h"
#include "Commands.h"
#include "DocumentSession.h"
#include "Hypertext.h"
#include "Node.h"
#include "Props.h"
#include "Value.h"

namespace {

struct GetState {
    std::string file;
    std::string path;
    std::string attribute;
};

int RunGet(const GetState& state) {
    std::string error;
    auto session = DocumentSession::Open(state.file, false, error);
    if (!session)
        return CommandFailure(error);
    Node* node = session->Note(state.path, error);
    if (!node)
        return CommandFailure(error);
    const Attribute* attribute = session->AttributeNamed(state.attribute, error);
    if (!attribute)
        return CommandFailure(error);
    ValuePtr value(node->CreateClonedValue(attribute));
    std::cout << (value ? value->AsString() : std::string()) << "\n";
    return 0;
}

CommandRegistration registration(
    "get",
    [](CLI::App& app, CommandResult& result) {
        auto state = std::make_shared<GetState>();
        auto* cmd = app.add_subcommand("get", "Print the value of an attribute of a note");
        cmd->add_option("FILE", state->file, "The document file")->required();
        cmd->add_option("PATH", state->path, "The note, such as /Projects/Ideas")->required();
        cmd->add_option("ATTR", state->attribute, "The attribute, such as Color")->required();
        cmd->callback([&result, state] { result.code = RunGet(*state); });
    },
    23);

} // namespace

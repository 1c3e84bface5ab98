// `rylvane add FILE PARENT NAME [--proto NAME] [--text TEXT]`: adds a note as
// the last child of PARENT and prints its path.
#include <iostream>

#include "AgentHooks.h"
#include "Commands.h"
#include "DocumentFile.h"
#include "DocumentSession.h"
#include "Hypertext.h"
#include "Node.h"
#include "NodeFacade.h"
#include "NodeHelpers.h"
#include "NodeIndex.h"
#include "UnicodeString.h"

namespace {

struct AddState {
    std::string file;
    std::string parent;
    std::string name;
    std::string prototype;
    std::string text;
    bool hasText = false;
};

int RunAdd(const AddState& state) {
    InstallAgentHooks();
    std::string error;
    auto session = DocumentSession::Open(state.file, true, error);
    if (!session)
        return CommandFailure(error);
    Hypertext* hypertext = session->Document();
    Node* parent = session->Note(state.parent, error);
    if (!parent)
        return CommandFailure(error);
    if (!UnicodeString::IsValidUTF8(state.name))
        return CommandFailure(state.file + ": the name is not valid UTF-8");
    if (!parent->CanReceiveChildren())
        return CommandFailure(state.file + ": " + state.parent + " cannot hold notes");
    if (!session->CanHoldDepth(DepthOfNote(parent) + 1, error))
        return CommandFailure(error);
    Node* prototype = nullptr;
    if (!state.prototype.empty()) {
        NodeIndex* index = hypertext->GetIndex();
        prototype = index ? index->FindPrototype(state.prototype) : nullptr;
        if (!prototype)
            prototype = HypertextFacade(hypertext).First(
                [&](Node* n) { return !n->IsHidden() && n->Name() == state.prototype; });
        if (!prototype)
            return CommandFailure(state.file + ": no note named " + state.prototype + " to be the prototype");
    }
    Node* note = NodeMaker(hypertext).Make(state.name, parent, parent->YoungestSon());
    if (!note)
        return CommandFailure(state.file + ": the note could not be made");
    if (prototype)
        note->SetPrototype(prototype->GetOriginal(), true);
    if (state.hasText)
        NodeText(note).SetText(state.text);
    if (!session->Save(error))
        return CommandFailure(error);
    std::cout << LineSafe(PathOfNote(note)) << "\n";
    return 0;
}

CommandRegistration registration(
    "add",
    [](CLI::App& app, CommandResult& result) {
        auto state = std::make_shared<AddState>();
        auto* cmd = app.add_subcommand("add", "Add a note under a parent note");
        cmd->add_option("FILE", state->file, "The document file")->required();
        cmd->add_option("PARENT", state->parent, "The parent note, such as / or /Projects")->required();
        cmd->add_option("NAME", state->name, "The name of the new note")->required();
        cmd->add_option("--proto", state->prototype, "The name of the note's prototype");
        auto* text = cmd->add_option("--text", state->text, "The note's text");
        cmd->callback([&result, state, text] {
            state->hasText = text->count() > 0;
            result.code = RunAdd(*state);
        });
    },
    22);

} // namespace

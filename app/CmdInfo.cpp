// `rylvane info FILE`: counts of notes, links and attributes, and the file's
// format version, one "name: value" a line.
#include <iostream>

#include "Attribute.h"
#include "Commands.h"
#include "DocumentSession.h"
#include "Hypertext.h"
#include "LinkManager.h"
#include "Node.h"
#include "NodeFacade.h"
#include "Props.h"

namespace {

struct InfoState {
    std::string file;
};

int RunInfo(const InfoState& state) {
    std::string error;
    auto session = DocumentSession::Open(state.file, false, error);
    if (!session)
        return CommandFailure(error);
    Hypertext* hypertext = session->Document();
    long notes = HypertextFacade(hypertext).Count([](Node* n) { return n->Father() != nullptr; });
    long aliases = HypertextFacade(hypertext).Count([](Node* n) { return n->IsAlias(); });
    long userAttributes = 0;
    long attributes = 0;
    for (const Attribute* a : hypertext->AttributeStorage()->InTreeOrder()) {
        if (a->IsAttributeCategory() || !a->IsValid() || a->Name() == "User")
            continue;
        ++attributes;
        if (a->IsUserAttribute())
            ++userAttributes;
    }
    std::cout << "notes: " << notes << "\n";
    std::cout << "aliases: " << aliases << "\n";
    LinkBundle all = hypertext->Links()->All();
    std::cout << "links: " << all.OmitPrototypes().size() << "\n";
    std::cout << "prototype links: " << all.size() - all.OmitPrototypes().size() << "\n";
    std::cout << "attributes: " << attributes << "\n";
    std::cout << "user attributes: " << userAttributes << "\n";
    std::cout << "version: " << session->Version() << "\n";
    std::cout << "revision: " << session->Revision() << "\n";
    return 0;
}

CommandRegistration registration(
    "info",
    [](CLI::App& app, CommandResult& result) {
        auto state = std::make_shared<InfoState>();
        auto* cmd = app.add_subcommand("info", "Count the notes, links and attributes of a document");
        cmd->add_option("FILE", state->file, "The document file")->required();
        cmd->callback([&result, state] { result.code = RunInfo(*state); });
    },
    29);

} // namespace

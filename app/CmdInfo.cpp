// `rylvane info FILE`: counts of notes, links and attributes, and the file's
// format version, one "name: value" a line.
#include <iostream>

#include "Attribute.h"
#include "Commands.h"
#include "DocumentFile.h"
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
    int version = 0;
    int revision = 0;
    auto hypertext = OpenDocument(state.file, error, &version, &revision);
    if (!hypertext)
        return CommandFailure(error);
    long notes = HypertextFacade(hypertext.get()).Count([](Node* n) { return n->Father() != nullptr; });
    long aliases = HypertextFacade(hypertext.get()).Count([](Node* n) { return n->IsAlias(); });
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
    std::cout << "version: " << version << "\n";
    std::cout << "revision: " << revision << "\n";
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

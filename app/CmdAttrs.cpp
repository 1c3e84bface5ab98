// rylvane attrs [--category NAME] [--user]: the attribute table of a new
// document, one attribute per line in table order: name, type, category and
// default, separated by tabs.
#include <memory>

#include "Attribute.h"
#include "Commands.h"
#include "Hypertext.h"
#include "Props.h"

namespace {

struct AttrsOptions {
    std::string category;
    bool user = false;
};

int RunAttrs(const AttrsOptions& options) {
    Hypertext document;
    Props* props = document.AttributeStorage();
    if (!options.category.empty() && !props->Has(options.category))
        return CommandFailure("no attribute category named \"" + options.category + "\"");

    const Attribute* root = props->Root();
    for (const Attribute* a : props->InTreeOrder()) {
        // The children of the root ("System", "User" and the holder of
        // unknown names) are the frame of the table, not attributes.
        if (!a->IsValid() || a->IsAttributeCategory() || a->Father() == root)
            continue;
        if (options.user != a->IsUserAttribute())
            continue;
        const std::string category = a->Category();
        if (!options.category.empty() && category != options.category)
            continue;
        std::cout << a->Name() << '\t' << Attribute::NameOfType(a->GetType()) << '\t' << category << '\t'
                  << a->GetDefaultValueAsString(document.Root()) << '\n';
    }
    std::cout.flush();
    return 0;
}

} // namespace

static CommandRegistration attrsRegistration(
    "attrs",
    [](CLI::App& app, CommandResult& result) {
        auto options = std::make_shared<AttrsOptions>();
        auto* cmd = app.add_subcommand("attrs", "Print the attribute table of a new document");
        cmd->add_option("--category", options->category, "Only the attributes of this category");
        cmd->add_flag("--user", options->user, "Only user attributes instead of system attributes");
        cmd->callback([&result, options] { result.code = RunAttrs(*options); });
    },
    60);

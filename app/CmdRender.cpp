// `rylvane render FILE PATH`: prints one note's expansion through the
// document's export template, a template chosen with --template, or the
// template text given with --text.
#include <iostream>

#include "ActionHooks.h"
#include "CommandTrust.h"
#include "Commands.h"
#include "DocumentSession.h"
#include "ExportHooks.h"
#include "Exporter.h"
#include "STemplateFile.h"

namespace {

struct RenderState {
    std::string file;
    std::string path;
    std::string templateName;
    std::string text;
    bool allowCommands = false;
};

int RunRender(const RenderState& state) {
    CommandTrust::Allow(state.allowCommands);
    InstallActionHooks();
    InstallExportHooks();
    std::string error;
    auto session = DocumentSession::Open(state.file, false, error);
    Node* note = session ? session->Note(state.path, error) : nullptr;
    if (!note)
        return CommandFailure(error);
    DummyHTMLExporter exporter(session->Document());
    if (!state.text.empty()) {
        exporter.SetTemplateText(state.text);
    } else if (!state.templateName.empty()) {
        exporter.ChooseTemplate(state.templateName);
        if (!exporter.HasTemplate()) {
            std::string list;
            for (const std::string& name : STemplateFile::Names())
                list += (list.empty() ? "" : ", ") + name;
            return CommandFailure("no template named " + state.templateName + "; built-in templates: " + list);
        }
    }
    // The expansion as it is, ended with a newline when it has none, so that
    // the shell's prompt does not run on after it.
    std::string page = exporter.ExportOne(note);
    if (!page.empty() && page.back() != '\n')
        page += '\n';
    std::cout << page;
    return 0;
}

CommandRegistration registration(
    "render",
    [](CLI::App& app, CommandResult& result) {
        auto state = std::make_shared<RenderState>();
        auto* cmd = app.add_subcommand("render", "Print one note expanded through an export template");
        cmd->add_option("FILE", state->file, "The document file")->required();
        cmd->add_option("PATH", state->path, "The note, such as /Projects/Ideas")->required();
        auto* chosen = cmd->add_option("--template", state->templateName,
                                       "A template note's path, or a built-in template: html, markdown, outline, opml");
        cmd->add_option("--text", state->text, "Template text, such as '^title^: ^value($Words)^'")->excludes(chosen);
        cmd->add_flag("--allow-commands", state->allowCommands,
                      "Let the document run outside programs (runCommand, the backtick)");
        cmd->callback([&result, state] { result.code = RunRender(*state); });
    },
    76);

}  // namespace

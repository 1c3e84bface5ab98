// `rylvane export FILE DIR`: exports the document to a folder of pages
// through its export template, or a template chosen with --template (a
// template note or a built-in template). --markdown writes a Markdown file
// per note; --outline and --opml write the whole document to one file (the
// outline as RTF when the file's name ends in ".rtf").
// Prints how many files were written and how many were left unchanged.
#include <filesystem>
#include <fstream>
#include <iostream>
#include <memory>
#include <sstream>
#include <unistd.h>

#include "ActionHooks.h"
#include "Attribute.h"
#include "CommandTrust.h"
#include "Commands.h"
#include "DocumentSession.h"
#include "ExportHooks.h"
#include "HTMLExporter.h"
#include "Hypertext.h"
#include "Node.h"
#include "Props.h"
#include "STemplateFile.h"
#include "TextExporter.h"

namespace {

struct ExportState {
    std::string file;
    std::string target;
    std::string templateName;
    bool outline = false;
    bool markdown = false;
    bool opml = false;
    bool allowCommands = false;
};

std::string BuiltInList() {
    std::string list;
    for (const std::string& name : STemplateFile::Names())
        list += (list.empty() ? "" : ", ") + name;
    return list;
}

// Draws "[#####     ] 12/40" over itself on a terminal.
void DrawProgress(long done, long total) {
    if (total <= 0)
        return;
    const int width = 30;
    int filled = static_cast<int>(width * std::min(done, total) / total);
    std::cerr << "\r[" << std::string(static_cast<size_t>(filled), '#')
              << std::string(static_cast<size_t>(width - filled), ' ') << "] " << done << "/" << total << std::flush;
}

std::string Counts(long written, long unchanged) {
    return std::to_string(written) + " written, " + std::to_string(unchanged) + " unchanged";
}

// Built-in HTML pages encode the notes' names and text for HTML whatever the
// document's default says (the document itself is not changed on disk).
void EncodeEntitiesForRun(Hypertext* document) {
    if (Props* props = document->AttributeStorage())
        if (Attribute* entities = props->GetAttribute("HTMLEntities"))
            entities->SetDefaultBoolean(true);
}

int RunSingleFile(const ExportState& state, DocumentSession& session) {
    std::unique_ptr<TextExporter> exporter;
    if (state.opml)
        exporter = std::make_unique<TextExporter>(session.Document(), "opml");
    else
        exporter = std::make_unique<OutlineExporter>(session.Document());
    if (!state.templateName.empty()) {
        // A template gives text; the RTF outline is made from the notes alone.
        if (state.outline && OutlineExporter::IsRTFPath(state.target))
            return CommandFailure("--template does not apply to an RTF outline");
        exporter->ChooseTemplate(state.templateName);
        if (!exporter->HasTemplate())
            return CommandFailure("no template named " + state.templateName + "; built-in templates: " + BuiltInList());
        exporter->Exporter::LoadTemplate();
    }
    std::string error;
    if (!exporter->ExportToPath(state.target, error))
        return CommandFailure(error);
    std::cout << Counts(exporter->Written(), exporter->Unchanged()) << "\n";
    return 0;
}

int RunExport(const ExportState& state) {
    CommandTrust::Allow(state.allowCommands);
    InstallActionHooks();
    InstallExportHooks();
    if (state.outline + state.markdown + state.opml > 1)
        return CommandFailure("choose one of --outline, --markdown and --opml");
    std::string error;
    auto session = DocumentSession::Open(state.file, false, error);
    if (!session)
        return CommandFailure(error);
    if (state.outline || state.opml)
        return RunSingleFile(state, *session);

    HTMLExporter exporter(session->Document(), state.target);
    std::string chosen = state.templateName;
    if (chosen.empty() && state.markdown)
        chosen = "markdown";
    if (state.markdown) {
        exporter.SetExtension(".md");
        exporter.SetMarkdown(true);
    }
    if (!chosen.empty()) {
        exporter.ChooseTemplate(chosen);
        if (!exporter.HasTemplate()) {
            std::error_code code;
            if (!std::filesystem::is_regular_file(chosen, code))
                return CommandFailure("no template named " + chosen + "; built-in templates: " + BuiltInList());
            // A template file named on the command line.
            std::ifstream in(chosen, std::ios::binary);
            std::ostringstream text;
            text << in.rdbuf();
            exporter.ChooseTemplate(std::string());
            exporter.SetTemplateText(text.str());
        }
    } else if (!exporter.HasTemplate()) {
        // A template file named by the document is read only when allowed.
        std::string named = session->Document()->Root()->GetString("HTMLExportTemplate");
        std::error_code code;
        if (!named.empty() && named[0] == '/' && !CommandTrust::Allowed() &&
            std::filesystem::is_regular_file(named, code))
            return CommandFailure(state.file + " names the template file " + named +
                                  ", which is read only with --allow-commands");
        return CommandFailure(state.file + " names no export template; choose one with --template (built-in templates: " +
                              BuiltInList() + ")");
    }
    if (chosen == "html" && !STemplateFile::BuiltInTemplate(chosen).empty())
        EncodeEntitiesForRun(session->Document());
    bool terminal = ::isatty(STDERR_FILENO) == 1;
    if (terminal)
        exporter.OnProgress(DrawProgress);
    bool done = exporter.Export(true);
    if (terminal)
        std::cerr << "\n";
    if (!done || !exporter.Error().empty())
        return CommandFailure(exporter.Error().empty() ? std::string("export failed") : exporter.Error());
    std::cout << Counts(exporter.Written(), exporter.Unchanged()) << "\n";
    return 0;
}

CommandRegistration registration(
    "export",
    [](CLI::App& app, CommandResult& result) {
        auto state = std::make_shared<ExportState>();
        auto* cmd = app.add_subcommand("export", "Export the document to a folder of pages, or to one file");
        cmd->add_option("FILE", state->file, "The document file")->required();
        cmd->add_option("DIR", state->target, "The export folder (the output file with --outline or --opml)")
            ->required();
        cmd->add_option("--template", state->templateName,
                        "A template note's path, or a built-in template: html, markdown, outline, opml");
        cmd->add_flag("--outline", state->outline,
                      "Write the whole document as one outline: indented text, or RTF when the file ends in .rtf");
        cmd->add_flag("--markdown", state->markdown, "Write a Markdown file per note");
        cmd->add_flag("--opml", state->opml, "Write the whole document as one OPML file");
        cmd->add_flag("--allow-commands", state->allowCommands,
                      "Let the document run outside programs (HTMLExportCommand, HTMLPreviewCommand, runCommand) "
                      "and read template files named by path");
        cmd->callback([&result, state] { result.code = RunExport(*state); });
    },
    75);

}  // namespace

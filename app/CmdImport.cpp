// `rylvane import FILE SOURCE [--into PATH] [--format NAME]`: reads a file
// (or, for "-", standard input as pasted text) into notes under a note of
// the document, saves it and prints how many notes were made.
#include <fstream>
#include <iostream>
#include <iterator>

#include "AgentHooks.h"
#include "Commands.h"
#include "DocumentFile.h"
#include "DocumentSession.h"
#include "Hypertext.h"
#include "ImportManager.h"
#include "Importable.h"
#include "ImportableText.h"
#include "Node.h"

namespace {

struct ImportState {
    std::string file;
    std::string source;
    std::string into = "/";
    std::string format;
};

// The importable for the source: a file by its extension, or the text of
// standard input; with a format, the text read as that kind.
std::unique_ptr<Importable> MakeImportable(const ImportState& state, std::string& error) {
    ImportableText::Kind kind = ImportableText::Kind::Any;
    if (!state.format.empty() && !ImportableText::KindNamed(state.format, kind)) {
        error = "unknown format " + state.format +
                " (one of opml, freemind, csv, tsv, outline, taskpaper, vcard, ris, text)";
        return nullptr;
    }
    if (state.source == "-") {
        std::string text((std::istreambuf_iterator<char>(std::cin)), std::istreambuf_iterator<char>());
        return std::make_unique<ImportableText>(std::move(text), kind);
    }
    auto item = Importable::CreateForFileURL(state.source);
    if (!item) {
        error = state.source + ": no such file";
        return nullptr;
    }
    if (kind == ImportableText::Kind::Any)
        return item;
    // A named format reads the file's text as that kind, whatever its name.
    std::ifstream in(state.source, std::ios::binary);
    if (!in) {
        error = state.source + ": cannot read the file";
        return nullptr;
    }
    std::string bytes((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
    auto text = std::make_unique<ImportableText>(std::move(bytes), kind);
    text->SetFile(state.source);
    return text;
}

int RunImport(const ImportState& state) {
    InstallAgentHooks();
    std::string error;
    auto session = DocumentSession::Open(state.file, true, error);
    Node* into = session ? session->Note(state.into, error) : nullptr;
    if (!into)
        return CommandFailure(error);
    Hypertext* document = session->Document();
    auto item = MakeImportable(state, error);
    if (!item)
        return CommandFailure(error);
    ImportManager manager(document, into);
    bool ok = manager.ImportIt(*item);
    manager.Finish();
    std::string source = state.source == "-" ? "standard input" : state.source;
    // Only a bad OPML file keeps what it made (its text as one note).
    if ((ok || manager.KeepsFailure()) && manager.IsValid() && !session->Save(error))
        return CommandFailure(error);
    if (manager.Failed() || !ok)
        return CommandFailure(source + ": " + (manager.Failed() ? manager.FailureMessage() : "nothing to import"));
    std::cout << manager.CreatedCount() << "\n";
    return 0;
}

CommandRegistration registration(
    "import",
    [](CLI::App& app, CommandResult& result) {
        auto state = std::make_shared<ImportState>();
        auto* cmd = app.add_subcommand("import", "Import a file (OPML, Freemind, CSV, TSV, outline, TaskPaper, "
                                                 "vCard, RIS, text) as notes");
        cmd->add_option("FILE", state->file, "The document file")->required();
        cmd->add_option("SOURCE", state->source, "The file to import, or - for standard input")->required();
        cmd->add_option("--into", state->into, "The note that receives the notes (default /)");
        cmd->add_option("--format", state->format,
                        "Read the source as: opml, freemind, csv, tsv, outline, taskpaper, vcard, ris, text");
        cmd->callback([&result, state] { result.code = RunImport(*state); });
    },
    40);

} // namespace

// `rylvane words FILE [PATH] [--count N] [--section] [--alphabetical]`: the
// most common words of a note, of a note and its descendants, or (without
// PATH) of the whole document, one "WORD<TAB>COUNT" line each. For the
// document the count is the number of notes holding the word. Stop words
// (the text of /Hints/stopList) are left out.
#include <iostream>

#include "Commands.h"
#include "DocumentFile.h"
#include "DocumentSession.h"
#include "Hypertext.h"
#include "LynxUpdater.h"
#include "Node.h"
#include "NodeIndexing.h"
#include "WordList.h"

namespace {

struct WordsState {
    std::string file;
    std::string path;
    size_t count = 20;
    bool section = false;
    bool alphabetical = false;
};

int RunWords(const WordsState& state) {
    std::string error;
    auto session = DocumentSession::Open(state.file, false, error);
    if (!session)
        return CommandFailure(error);
    Hypertext* document = session->Document();
    Node* node = nullptr;
    if (!state.path.empty() && !(node = session->Note(state.path, error)))
        return CommandFailure(error);
    LynxUpdater index(document);
    index.IndexAll();
    std::vector<WordRecord> words;
    if (node) {
        if (!NodeIndexing(node).GetLynx())
            index.IndexNow(node);
        words = NodeIndexing(node).CommonWords(state.count, state.section, state.alphabetical);
    } else {
        WordList stop = WordList::For(document);
        Lynx& document = index.DocumentLynx();
        words = state.alphabetical ? document.CommonWordsAlphabetically(state.count, stop)
                                   : document.CommonWords(state.count, stop);
    }
    for (const WordRecord& word : words)
        std::cout << word.word << "\t" << static_cast<long>(word.weight) << "\n";
    return 0;
}

CommandRegistration registration(
    "words",
    [](CLI::App& app, CommandResult& result) {
        auto state = std::make_shared<WordsState>();
        auto* cmd = app.add_subcommand("words", "The most common words of a note, a section or the document");
        cmd->add_option("FILE", state->file, "The document file")->required();
        cmd->add_option("PATH", state->path, "The note (the whole document when left out)");
        cmd->add_option("--count", state->count, "How many words at most (default 20)")->check(CLI::Range(1, 100000));
        cmd->add_flag("--section", state->section, "The note and all its descendants");
        cmd->add_flag("--alphabetical", state->alphabetical, "List the words in alphabetical order");
        cmd->callback([&result, state] { result.code = RunWords(*state); });
    },
    51);

} // namespace

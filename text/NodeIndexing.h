#pragma once
// The word index as seen from one note: what the action language, export
// and the commands call. Every call answers safely on a null note or a
// document without an updater (see LynxUpdater).
#include <string>
#include <vector>

#include "Lynx.h"
#include "NodeFacade.h"

class NodeIndexing : public NodeFacade {
public:
    using NodeFacade::NodeFacade;

    // The note's index, null when it has none.
    Lynx* GetLynx() const;
    // Indexes the note (nothing for an invalid note).
    void Index() const;
    // Indexes the note if it is marked as needing it, and clears the mark.
    void IndexIfNeeded() const;
    bool NeedsToBeIndexed() const;
    void NeedsToBeIndexed(bool n) const;
    // How similar the other note is to this one (0 without indexes).
    double Similarity(const Node* other) const;
    static double Similarity(const Node* a, const Node* b);
    // The note's index holds the word (filtered as the index filters).
    bool HasWord(const std::string& word) const;
    // The notes most like this one, best first.
    std::vector<LynxRecord> MostSimilar(size_t count, bool exportableOnly = false) const;
    // The most common words of the note, or of the note and its descendants,
    // without the document's stop words.
    std::vector<WordRecord> CommonWords(size_t count, bool section = false, bool alphabetical = false) const;
    // Stops and restarts the document's indexing queue.
    void Suspend() const;
    void Resume() const;
};

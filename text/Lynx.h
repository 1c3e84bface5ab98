#pragma once
// The word index of a note, or of a whole document. A note's index counts
// the words of its text, name and indexed attributes; the document's counts
// in how many notes each word stands. From these come how similar two notes
// are (a tf-idf sum), the notes most similar to one, and the most common
// words of a note, a section or the document.
#include <atomic>
#include <cstddef>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include "LynxDictionary.h"
#include "STime.h"

class Hypertext;
class Node;
class OperationQueue;
class WordList;

// A note and how similar it is to another.
struct LynxRecord {
    Node* node = nullptr;
    double score = 0.0;
    bool operator<(const LynxRecord& o) const { return score < o.score; }
};

// A word and its weight (its count).
struct WordRecord {
    std::string word;
    double weight = 0.0;
    bool operator<(const WordRecord& o) const { return weight < o.weight; }
    static bool byName(const WordRecord& a, const WordRecord& b) { return a.word < b.word; }
};

class Lynx {
public:
    static constexpr int kDefaultMinimumLength = 3;
    // The document index merges at most this often; a request sooner waits
    // for the delay.
    static constexpr double kMergeInterval = 20.0;
    static constexpr double kMergeDelay = 30.0;

    // An empty index, last indexed now.
    Lynx();
    // The index of a text, never indexed as a note.
    explicit Lynx(const std::string& text, int minimumLength = kDefaultMinimumLength);
    virtual ~Lynx();
    Lynx(const Lynx&) = delete;
    Lynx& operator=(const Lynx&) = delete;

    virtual size_t size() const;
    // The document index: merges now, or after a delay when the last merge
    // is recent. Nothing for an invalid document or while a merge waits.
    virtual void Merge(Hypertext* hypertext);
    // Queues the merge of every note's index (root and aliases left out).
    virtual void MergeNow(Hypertext* hypertext);
    // This index becomes the sum of the note's and its descendants' indexes.
    virtual void ForSection(Node* node);
    virtual void Scan(const std::string& text);
    virtual void Extend(const std::string& text);
    // Waits for queued merges, filters the word and answers its count.
    virtual int Get(const std::string& word) const;
    virtual void clear();
    virtual void Merge(const Lynx& other);
    virtual void Add(const Lynx& other);
    virtual void Subtract(const Lynx& other);
    virtual double Similarity(const Lynx& other, Hypertext* hypertext) const;
    // The notes most like `node` (whose index this is), best first, at most
    // `count`; scores below 0.001 are left out.
    virtual std::vector<LynxRecord> MostSimilarTo(Node* node, size_t count, bool exportableOnly) const;
    // The `count` most frequent words not in the stop list, most frequent first.
    virtual std::vector<WordRecord> CommonWords(size_t count, const WordList& stopList) const;
    virtual std::vector<WordRecord> CommonWordsAlphabetically(size_t count, const WordList& stopList) const;
    // Lower case, split at white space, punctuation and symbols, tokens
    // holding a digit dropped, rejoined with single blanks.
    static std::string Filter(const std::string& text);
    bool Indexing() const { return indexing.load(); }
    void Indexing(bool i) { indexing.store(i); }
    // Marks the note's index as made and hands the note to its document's updater.
    virtual void IndexNode(Node* node);
    STime LastIndexed() const;
    void LastIndexed(const STime& time);
    static double TextLengthFactor(const Node* a, const Node* b);
    static double PrototypeFactor(const Node* a, const Node* b);
    // The note would be exported: it and each ancestor below the root allow it.
    static bool IsExportable(const Node* node);
    // The document's own index, null when the document has no updater.
    static Lynx* GetHypertextLynx(Hypertext* hypertext);
    void Initialize() {}
    LynxDictionary& Dictionary() { return dictionary; }
    const LynxDictionary& Dictionary() const { return dictionary; }
    int MinimumLength() const { return minimumLength; }
    // Waits until the queued merges are done.
    void Wait() const;
    // The note's text size plus the length of its name when it was indexed
    // (what TextLengthFactor weighs), or -1 when not known.
    long NoteSize() const { return noteSize.load(); }
    void NoteSize(long size) { noteSize.store(size); }

private:
    struct MergeState;
    // The merge queue and timer, made when the index first merges a document.
    std::shared_ptr<MergeState> State(Hypertext* hypertext) const;
    static void QueueMerge(MergeState& state, Lynx* lynx, Hypertext* hypertext);

    LynxDictionary dictionary;
    int minimumLength = kDefaultMinimumLength;
    std::atomic<bool> indexing{true};
    std::atomic<long> noteSize{-1};
    mutable std::mutex timeLock;
    STime lastIndexed;
    mutable std::shared_ptr<MergeState> merging;
    mutable std::mutex mergingLock;
};

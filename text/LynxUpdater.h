#pragma once
// A document's word indexes: the index of each note, the document's own
// index, and the queue on which notes are indexed away from the caller's
// thread. Whoever opens a document for similarity work makes one beside it
// and destroys it before the document; while it lives, For(hypertext)
// finds it, and notes whose text or name changes are reindexed on its queue.
#include <atomic>
#include <cstdint>
#include <memory>
#include <mutex>
#include <string>
#include <unordered_map>
#include <vector>

#include "Lynx.h"
#include "RylSerial.h"

class Attribute;
class Hypertext;
class Node;

class LynxUpdater {
public:
    explicit LynxUpdater(Hypertext* hypertext);
    ~LynxUpdater();
    LynxUpdater(const LynxUpdater&) = delete;
    LynxUpdater& operator=(const LynxUpdater&) = delete;

    // The updater of a document, or null.
    static LynxUpdater* For(const Hypertext* hypertext);
    // The updater of a document; when it has none, one is made as a part of
    // the document and lives as long as the document does.
    static LynxUpdater& Ensure(Hypertext* hypertext);

    // The note's index, null when it has none yet.
    Lynx* GetLynx(const Node* node) const;
    // The same with the table of indexes held for a long walk (see Hold).
    Lynx* GetLynxHeld(const Node* node) const;
    // Holds the table of indexes: notes are not indexed until it is let go.
    std::unique_lock<std::mutex> Hold() const { return std::unique_lock<std::mutex>(lock); }
    // The note's index, made empty when it has none.
    Lynx& LynxFor(const Node* node);
    Lynx& DocumentLynx() { return *document; }
    Hypertext* GetHypertext() const { return hypertext; }

    // Queues the indexing of a note (aliases are left out).
    void Add(Node* node);
    // Indexes a note on the calling thread.
    void IndexNow(Node* node);
    // Indexes every exportable note that is no alias on the calling thread,
    // then merges the document index and waits for it.
    void IndexAll();
    // Waits until the queued notes are indexed.
    void Wait();
    // Stops and restarts the taking of queued notes.
    void Suspend();
    void Resume();
    // What a note's index is made of: its text, its name, and the values of
    // the user attributes that hold text (string, set and list attributes).
    std::string IndexText(const Node* node) const;
    // A note's text or name changed.
    void TextChanged(Node* node);

    // Whether the note's index holds the word; an exportable note not yet
    // indexed (or marked as needing it) is indexed first. An alias answers
    // for its original.
    bool HasWord(Node* node, const std::string& word);
    // The notes most similar to `node`, best first, at most `count`. The
    // first call indexes every note; later calls merge the document index
    // again (at most every kMergeInterval seconds) when notes were
    // reindexed since. `asking` is the note the question is computed for.
    // The answer for one note and count is remembered for one pass of
    // questions (until the note that asked first asks again after others),
    // and less when an index changes or notes come or go, so that a query
    // asking it for every note of the document scans the document once per
    // pass. Without `asking` nothing is remembered.
    std::vector<Node*> MostSimilar(Node* node, size_t count, const Node* asking = nullptr);

    // At most this many notes holding a word are read for RelatedWords: the
    // first in outline order. A word found in nearly every note of a large
    // document thus costs a walk of the outline and this many note indexes.
    static constexpr size_t kRelatedWordsNoteLimit = 1000;
    // The words that stand in the most notes beside `word` (filtered as the
    // index filters text): most shared notes first, ties in alphabetical
    // order, the word itself left out, at most `count`. Like MostSimilar,
    // the first call indexes every note, and the answer is remembered for
    // one pass of questions asked for `asking` and the notes after it; a
    // second question in a pass lists the notes holding each word once for
    // the rest of the pass. Without `asking` nothing is remembered.
    std::vector<std::string> RelatedWords(const std::string& word, size_t count, const Node* asking = nullptr);

private:
    std::vector<const Attribute*> IndexedAttributes() const;
    std::string IndexText(const Node* node, const std::vector<const Attribute*>& attributes) const;
    void Store(uint32_t id, const std::string& text, long noteSize);
    static long NoteSize(const Node* node);
    // Indexes every note the first time it is called; under similarLock.
    void IndexAllOnce();
    // Lists the notes holding each word for RelatedWords; under similarLock.
    void MakePostings();

    Hypertext* hypertext;
    std::unique_ptr<Lynx> document;
    mutable std::mutex lock;
    std::unordered_map<uint32_t, std::unique_ptr<Lynx>> notes;
    OperationQueue queue;
    std::mutex suspendLock;
    bool suspended = false;
    // What notes were changed while suspended: their ids, index texts and sizes.
    struct Held {
        uint32_t id;
        std::string text;
        long size;
    };
    std::vector<Held> held;
    // Counts the notes stored, so that what was worked out from the indexes
    // can tell whether they changed since.
    std::atomic<uint64_t> generation{0};
    // What MostSimilar remembers, under its own lock.
    std::mutex similarLock;
    bool allIndexed = false;
    uint64_t mergedAt = 0;
    struct Remembered {
        const Node* node = nullptr;
        uint32_t id = 0;
        size_t count = 0;
        uint64_t generation = 0;
        long notes = -1;
        std::vector<Node*> found;
        // Only compared, never followed.
        const Node* passStart = nullptr;
        bool askedOthers = false;
    } remembered;
    // What RelatedWords remembers for one pass of questions, under
    // similarLock: the last answer and, from the second question of a pass,
    // the notes holding each word (at most kRelatedWordsNoteLimit, in outline
    // order, as positions in `indexes`). Note indexes live as long as the
    // updater, and the pass ends when any of them changes.
    struct RememberedWords {
        uint32_t word = 0;
        size_t count = 0;
        uint64_t generation = 0;
        long notes = -1;
        std::vector<std::string> found;
        // Only compared, never followed.
        const Node* passStart = nullptr;
        bool askedOthers = false;
        bool postingsMade = false;
        std::vector<const Lynx*> indexes;
        std::unordered_map<uint32_t, std::vector<uint32_t>> postings;
    } related;
};

// Installs the index's part of the hooks (values/Hooks.h): a note whose text
// or name changed is reindexed by its document's updater, and action code
// asks the indexes whether a note holds a word, which notes are most like
// one and which words share the most notes with a word (making the
// document's updater when it has none). Run by the program at start-up and
// by the first updater; calling it again does nothing.
void InstallTextHooks();

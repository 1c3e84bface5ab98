#pragma once
// A word-count map: how often each word stands in a note (or, for the
// document's own index, in how many notes). Every access goes through the
// map's own serial queue, so that indexing threads and readers never meet.
// Words are kept by their numbers in LynxWords, sorted, as a flat list.
#include <cstddef>
#include <string>
#include <utility>
#include <vector>

#include <mutex>

#include "LynxWords.h"

class Hypertext;
class Lynx;

class LynxDictionary {
public:
    using WordID = LynxWords::WordID;
    using Entry = std::pair<WordID, int>;

    LynxDictionary();
    LynxDictionary(const LynxDictionary& other);
    LynxDictionary& operator=(const LynxDictionary& other);

    void clear();
    // The count of a word, made 0 when missing, for the caller to change.
    // The reference is valid until the next change of the map.
    int& operator[](const std::string& word);
    void Add(const std::string& word, int count);
    // Counts are added.
    void Add(const LynxDictionary& other);
    // The same, waiting until it is done (Add may run later).
    void AddSync(const LynxDictionary& other);
    // Each word of the other adds 1, whatever its count there.
    void Merge(const LynxDictionary& other);
    // Counts are subtracted.
    void Subtract(const LynxDictionary& other);
    // The count of a word as given (not filtered); 0 when missing.
    int Get(const std::string& word) const;
    int Get(WordID id) const;
    // Counts each word of a filtered text at least `minimumLength` long.
    void Extend(const std::string& filtered, int minimumLength);
    // Adds a batch of word numbers, one count each.
    void AddWords(std::vector<WordID> ids);
    // Replaces the whole map with the number of dictionaries holding each
    // word: what Merge of each would give, in one pass.
    void MergeAll(const std::vector<const LynxDictionary*>& others);

    // How much of this note's vocabulary the other note shares, weighed by
    // how rare each word is in the document (see Lynx::Similarity).
    double Similarity(const Lynx& other, Hypertext* hypertext) const;

    // A copy of the entries, sorted by word number.
    std::vector<Entry> Entries() const;
    // Words and counts, in the order of the words' numbers.
    std::vector<std::pair<std::string, int>> Words() const;
    size_t size() const;

private:
    // The similarity scan reads candidates' entries in place.
    friend class Lynx;
    static void MergeInto(std::vector<Entry>& into, const std::vector<Entry>& from, int sign, bool once);
    // Runs the block as the map's serial queue: one block at a time, on the
    // calling thread. A plain lock serves, as every block is synchronous.
    template <typename F>
    decltype(auto) Sync(F&& block) const {
        std::lock_guard<std::mutex> guard(lock);
        return block();
    }
    mutable std::mutex lock;
    std::vector<Entry> entries;
};

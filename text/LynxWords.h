#pragma once
// The process-wide table of indexed words: each word gets a small number
// once, so that the word indexes of notes hold and compare numbers rather
// than strings. Words are never forgotten; a table holds the vocabulary of
// the documents read, which stays small beside their notes.
#include <cstdint>
#include <deque>
#include <mutex>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

class LynxWords {
public:
    using WordID = uint32_t;

    static LynxWords& Shared();

    // The number of a word, made when it is new.
    WordID Intern(std::string_view word);
    // Interns the words of a filtered text (words between single blanks) of
    // at least `minimumLength` characters, appending their numbers.
    void InternWords(std::string_view filtered, int minimumLength, std::vector<WordID>& out);
    // The number of a word, or false when the word was never indexed.
    bool Find(std::string_view word, WordID& id) const;
    // The word of a number. The reference stays valid for good.
    const std::string& Word(WordID id) const;
    size_t size() const;

    // The length of a word as the index counts it: UTF-16 code units.
    static int Length(std::string_view word);

private:
    mutable std::mutex lock;
    std::deque<std::string> words;
    std::unordered_map<std::string_view, WordID> ids;
};

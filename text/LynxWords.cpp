#include "LynxWords.h"

LynxWords& LynxWords::Shared() {
    static LynxWords* table = new LynxWords;
    return *table;
}

int LynxWords::Length(std::string_view word) {
    int units = 0;
    for (unsigned char c : word) {
        // Each lead byte starts a character; four-byte characters take two units.
        if ((c & 0xC0) != 0x80)
            units += c >= 0xF0 ? 2 : 1;
    }
    return units;
}

LynxWords::WordID LynxWords::Intern(std::string_view word) {
    std::lock_guard<std::mutex> guard(lock);
    auto it = ids.find(word);
    if (it != ids.end())
        return it->second;
    WordID id = static_cast<WordID>(words.size());
    words.emplace_back(word);
    ids.emplace(std::string_view(words.back()), id);
    return id;
}

void LynxWords::InternWords(std::string_view filtered, int minimumLength, std::vector<WordID>& out) {
    std::lock_guard<std::mutex> guard(lock);
    size_t start = 0;
    while (start < filtered.size()) {
        size_t end = filtered.find(' ', start);
        if (end == std::string_view::npos)
            end = filtered.size();
        std::string_view word = filtered.substr(start, end - start);
        start = end + 1;
        if (word.empty() || Length(word) < minimumLength)
            continue;
        auto it = ids.find(word);
        if (it != ids.end()) {
            out.push_back(it->second);
            continue;
        }
        WordID id = static_cast<WordID>(words.size());
        words.emplace_back(word);
        ids.emplace(std::string_view(words.back()), id);
        out.push_back(id);
    }
}

bool LynxWords::Find(std::string_view word, WordID& id) const {
    std::lock_guard<std::mutex> guard(lock);
    auto it = ids.find(word);
    if (it == ids.end())
        return false;
    id = it->second;
    return true;
}

const std::string& LynxWords::Word(WordID id) const {
    std::lock_guard<std::mutex> guard(lock);
    static const std::string none;
    return id < words.size() ? words[id] : none;
}

size_t LynxWords::size() const {
    std::lock_guard<std::mutex> guard(lock);
    return words.size();
}

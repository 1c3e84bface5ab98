#pragma once
// A set of stop words: words left out of a list of common words.
#include <istream>
#include <set>
#include <string>

class Hypertext;

class WordList {
public:
    // The configuration file "stoplist.txt" (built in: a short list of
    // English function words).
    static WordList StopList(Hypertext* hypertext);
    // The document's own list: the text of the note at "/Hints/stopList",
    // or failing that of the first note named "stoplist".
    static WordList For(Hypertext* hypertext);
    static WordList FromFile(const std::string& path);
    static WordList FromStream(std::istream& stream);
    // Reads blank-delimited words, each filtered as the index filters text,
    // and inserts those not empty.
    void Filter(std::istream& stream);

    bool Has(const std::string& word) const { return words.count(word) != 0; }
    void insert(const std::string& word) { words.insert(word); }
    void clear() { words.clear(); }
    bool empty() const { return words.empty(); }
    size_t size() const { return words.size(); }

private:
    std::set<std::string> words;
};

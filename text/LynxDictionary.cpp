#include "LynxDictionary.h"

#include <algorithm>
#include <cmath>

#include "Lynx.h"
#include "LynxUpdater.h"
#include "NodeFacade.h"

namespace {

bool ByWord(const LynxDictionary::Entry& a, LynxDictionary::WordID b) { return a.first < b; }

} // namespace

LynxDictionary::LynxDictionary() = default;

LynxDictionary::LynxDictionary(const LynxDictionary& other) {
    entries = other.Entries();
}

LynxDictionary& LynxDictionary::operator=(const LynxDictionary& other) {
    if (this != &other) {
        std::vector<Entry> copy = other.Entries();
        Sync([&] { entries = std::move(copy); });
    }
    return *this;
}

void LynxDictionary::clear() {
    Sync([&] { entries.clear(); });
}

int& LynxDictionary::operator[](const std::string& word) {
    WordID id = LynxWords::Shared().Intern(word);
    return Sync([&]() -> int& {
        auto it = std::lower_bound(entries.begin(), entries.end(), id, ByWord);
        if (it == entries.end() || it->first != id)
            it = entries.insert(it, Entry(id, 0));
        return it->second;
    });
}

void LynxDictionary::Add(const std::string& word, int count) {
    WordID id = LynxWords::Shared().Intern(word);
    Sync([&] {
        auto it = std::lower_bound(entries.begin(), entries.end(), id, ByWord);
        if (it == entries.end() || it->first != id)
            entries.insert(it, Entry(id, count));
        else
            it->second += count;
    });
}

void LynxDictionary::MergeInto(std::vector<Entry>& into, const std::vector<Entry>& from, int sign, bool once) {
    std::vector<Entry> out;
    out.reserve(into.size() + from.size());
    size_t i = 0, j = 0;
    while (i < into.size() || j < from.size()) {
        if (j == from.size() || (i < into.size() && into[i].first < from[j].first)) {
            out.push_back(into[i++]);
        } else {
            int add = sign * (once ? 1 : from[j].second);
            if (i < into.size() && into[i].first == from[j].first)
                out.emplace_back(into[i++].first, 0), out.back().second = into[i - 1].second + add;
            else
                out.emplace_back(from[j].first, add);
            ++j;
        }
    }
    into = std::move(out);
}

void LynxDictionary::Add(const LynxDictionary& other) {
    std::vector<Entry> from = other.Entries();
    Sync([&] { MergeInto(entries, from, 1, false); });
}

void LynxDictionary::AddSync(const LynxDictionary& other) { Add(other); }

void LynxDictionary::Merge(const LynxDictionary& other) {
    std::vector<Entry> from = other.Entries();
    Sync([&] { MergeInto(entries, from, 1, true); });
}

void LynxDictionary::Subtract(const LynxDictionary& other) {
    std::vector<Entry> from = other.Entries();
    Sync([&] { MergeInto(entries, from, -1, false); });
}

int LynxDictionary::Get(const std::string& word) const {
    WordID id;
    if (!LynxWords::Shared().Find(word, id))
        return 0;
    return Get(id);
}

int LynxDictionary::Get(WordID id) const {
    return Sync([&] {
        auto it = std::lower_bound(entries.begin(), entries.end(), id, ByWord);
        return it != entries.end() && it->first == id ? it->second : 0;
    });
}

void LynxDictionary::Extend(const std::string& filtered, int minimumLength) {
    std::vector<WordID> ids;
    LynxWords::Shared().InternWords(filtered, minimumLength, ids);
    AddWords(std::move(ids));
}

void LynxDictionary::AddWords(std::vector<WordID> ids) {
    if (ids.empty())
        return;
    std::sort(ids.begin(), ids.end());
    std::vector<Entry> counted;
    for (WordID id : ids) {
        if (!counted.empty() && counted.back().first == id)
            ++counted.back().second;
        else
            counted.emplace_back(id, 1);
    }
    Sync([&] {
        if (entries.empty())
            entries = std::move(counted);
        else
            MergeInto(entries, counted, 1, false);
    });
}

void LynxDictionary::MergeAll(const std::vector<const LynxDictionary*>& others) {
    std::vector<int> counts(LynxWords::Shared().size(), 0);
    for (const LynxDictionary* other : others) {
        other->Sync([&] {
            for (const Entry& e : other->entries) {
                if (e.first >= counts.size())
                    counts.resize(e.first + 1, 0);
                ++counts[e.first];
            }
        });
    }
    std::vector<Entry> merged;
    for (size_t id = 0; id < counts.size(); ++id)
        if (counts[id])
            merged.emplace_back(static_cast<WordID>(id), counts[id]);
    Sync([&] { entries = std::move(merged); });
}

double LynxDictionary::Similarity(const Lynx& other, Hypertext* hypertext) const {
    double n = static_cast<double>(HypertextFacade(hypertext).NodeCount());
    double k = n >= 12 ? 3.0 : 0.0;
    Lynx* document = Lynx::GetHypertextLynx(hypertext);
    if (!document)
        return 0.0;
    const LynxDictionary& theirs = const_cast<Lynx&>(other).Dictionary();
    double size = static_cast<double>(theirs.size());
    double sum = 0.0;
    for (const Entry& e : Entries()) {
        int c = theirs.Get(e.first);
        if (c == 0)
            continue;
        if (c >= 2)
            c = 1;
        int d = std::max(1, document->Dictionary().Get(e.first));
        sum += (c / size) * std::log(n / (d + k));
    }
    return sum;
}

std::vector<LynxDictionary::Entry> LynxDictionary::Entries() const {
    return Sync([&] { return entries; });
}

std::vector<std::pair<std::string, int>> LynxDictionary::Words() const {
    std::vector<std::pair<std::string, int>> words;
    for (const Entry& e : Entries())
        words.emplace_back(LynxWords::Shared().Word(e.first), e.second);
    return words;
}

size_t LynxDictionary::size() const {
    return Sync([&] { return entries.size(); });
}

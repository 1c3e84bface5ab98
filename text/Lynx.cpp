#include "Lynx.h"

#include <algorithm>
#include <cmath>
#include <unordered_set>

#include <boost/asio/steady_timer.hpp>
#include <unicode/uchar.h>
#include <unicode/utf8.h>

#include "Attribute.h"
#include "Hypertext.h"
#include "Props.h"
#include "LynxUpdater.h"
#include "Node.h"
#include "NodeFacade.h"
#include "NodeHelpers.h"
#include "WordList.h"

// The merge queue of a document index and its one-shot timer. The timer's
// handler holds this state, not the index: the index may be gone when the
// handler runs, which `owner` then tells.
struct Lynx::MergeState {
    std::mutex lock;
    Lynx* owner = nullptr;
    bool pending = false;
    std::unique_ptr<OperationQueue> queue;
    std::unique_ptr<boost::asio::steady_timer> timer;
};

namespace {

// What separates words: white space, punctuation, symbols, controls.
bool IsSeparator(UChar32 c) {
    switch (u_charType(c)) {
    case U_SPACE_SEPARATOR:
    case U_LINE_SEPARATOR:
    case U_PARAGRAPH_SEPARATOR:
    case U_CONTROL_CHAR:
    case U_FORMAT_CHAR:
    case U_DASH_PUNCTUATION:
    case U_START_PUNCTUATION:
    case U_END_PUNCTUATION:
    case U_CONNECTOR_PUNCTUATION:
    case U_OTHER_PUNCTUATION:
    case U_INITIAL_PUNCTUATION:
    case U_FINAL_PUNCTUATION:
    case U_MATH_SYMBOL:
    case U_CURRENCY_SYMBOL:
    case U_MODIFIER_SYMBOL:
    case U_OTHER_SYMBOL:
        return true;
    default:
        return u_isUWhiteSpace(c);
    }
}

} // namespace

Lynx::Lynx() : lastIndexed(STime::Now()) {}

Lynx::Lynx(const std::string& text, int length) : minimumLength(length), lastIndexed(STime::Never()) { Scan(text); }

Lynx::~Lynx() {
    std::shared_ptr<MergeState> state;
    {
        std::lock_guard<std::mutex> guard(mergingLock);
        state = merging;
    }
    if (!state)
        return;
    {
        std::lock_guard<std::mutex> guard(state->lock);
        state->owner = nullptr;
        if (state->timer)
            state->timer->cancel();
    }
    if (state->queue)
        state->queue->WaitUntilAllOperationsAreFinished();
}

std::string Lynx::Filter(const std::string& text) {
    std::string out;
    out.reserve(text.size());
    size_t tokenStart = 0;
    bool inToken = false, hasDigit = false;
    auto endToken = [&] {
        if (inToken && hasDigit)
            out.resize(tokenStart);
        else if (inToken)
            out += ' ';
        inToken = hasDigit = false;
    };
    const char* s = text.data();
    int32_t i = 0, length = static_cast<int32_t>(text.size());
    while (i < length) {
        unsigned char byte = static_cast<unsigned char>(s[i]);
        if (byte < 0x80) {
            ++i;
            char c = static_cast<char>(byte);
            if (c >= 'A' && c <= 'Z')
                c = static_cast<char>(c + 32);
            bool letter = (c >= 'a' && c <= 'z');
            bool digit = c >= '0' && c <= '9';
            if (!letter && !digit) {
                endToken();
                continue;
            }
            if (!inToken) {
                inToken = true;
                tokenStart = out.size();
            }
            hasDigit = hasDigit || digit;
            out += c;
            continue;
        }
        UChar32 c;
        U8_NEXT(s, i, length, c);
        if (c < 0 || IsSeparator(c)) {
            endToken();
            continue;
        }
        if (!inToken) {
            inToken = true;
            tokenStart = out.size();
        }
        if (u_charType(c) == U_DECIMAL_DIGIT_NUMBER)
            hasDigit = true;
        UChar32 lower = u_tolower(c);
        char buffer[4];
        int32_t n = 0;
        U8_APPEND_UNSAFE(buffer, n, lower);
        out.append(buffer, static_cast<size_t>(n));
    }
    endToken();
    if (!out.empty() && out.back() == ' ')
        out.pop_back();
    return out;
}

size_t Lynx::size() const { return dictionary.size(); }

std::shared_ptr<Lynx::MergeState> Lynx::State(Hypertext* hypertext) const {
    std::lock_guard<std::mutex> guard(mergingLock);
    if (!merging)
        merging = std::make_shared<MergeState>();
    if (!merging->queue) {
        std::string name = "com.morvent.rylvane.reindex";
        if (hypertext)
            name += " " + HypertextFacade(hypertext).DocumentName();
        merging->queue = std::make_unique<OperationQueue>(name, 1);
    }
    return merging;
}

void Lynx::Merge(Hypertext* hypertext) {
    if (!HypertextFacade(hypertext).Valid())
        return;
    std::shared_ptr<MergeState> state = State(hypertext);
    {
        std::lock_guard<std::mutex> guard(state->lock);
        if (state->pending)
            return;
        if (LastIndexed().SecondsAgo() < kMergeInterval) {
            state->pending = true;
            state->owner = this;
            state->timer = std::make_unique<boost::asio::steady_timer>(RylBackgroundContext());
            state->timer->expires_after(std::chrono::milliseconds(static_cast<long>(kMergeDelay * 1000)));
            // The handler holds the state, so that it outlives an index
            // closed while the timer waits; `owner` tells it so.
            state->timer->async_wait([state, hypertext](const boost::system::error_code& error) {
                std::lock_guard<std::mutex> lock(state->lock);
                state->pending = false;
                if (error || !state->owner)
                    return;
                QueueMerge(*state, state->owner, hypertext);
            });
            return;
        }
    }
    MergeNow(hypertext);
}

void Lynx::MergeNow(Hypertext* hypertext) {
    std::shared_ptr<MergeState> state = State(hypertext);
    std::lock_guard<std::mutex> guard(state->lock);
    QueueMerge(*state, this, hypertext);
}

void Lynx::QueueMerge(MergeState& state, Lynx* lynx, Hypertext* hypertext) {
    state.queue->AddOperation([lynx, hypertext] {
        LynxUpdater* updater = LynxUpdater::For(hypertext);
        if (!updater)
            return;
        std::vector<const LynxDictionary*> notes;
        HypertextFacade(hypertext).Apply([&](Node* n) {
            if (n->IsRoot() || n->IsAlias())
                return;
            if (const Lynx* other = updater->GetLynx(n))
                notes.push_back(&other->Dictionary());
        });
        lynx->dictionary.MergeAll(notes);
        lynx->LastIndexed(STime::Now());
    });
}

void Lynx::Wait() const {
    OperationQueue* queue = nullptr;
    {
        std::lock_guard<std::mutex> guard(mergingLock);
        if (merging && merging->queue)
            queue = merging->queue.get();
    }
    if (queue)
        queue->WaitUntilAllOperationsAreFinished();
}

void Lynx::ForSection(Node* node) {
    clear();
    if (!node)
        return;
    LynxUpdater* updater = LynxUpdater::For(node->GetHypertext());
    if (!updater)
        return;
    auto take = [&](Node* n) {
        if (n->IsRoot() || n->IsAlias())
            return;
        if (const Lynx* lynx = updater->GetLynx(n))
            dictionary.Add(lynx->Dictionary());
    };
    take(node);
    for (Node* n = node->Son(); n;) {
        take(n);
        if (n->Son()) {
            n = n->Son();
            continue;
        }
        while (n && n != node && !n->Brother())
            n = n->Father();
        n = (n && n != node) ? n->Brother() : nullptr;
    }
}

void Lynx::Scan(const std::string& text) {
    clear();
    Extend(text);
}

void Lynx::Extend(const std::string& text) { dictionary.Extend(Filter(text), minimumLength); }

int Lynx::Get(const std::string& word) const {
    Wait();
    return dictionary.Get(Filter(word));
}

void Lynx::clear() { dictionary.clear(); }

void Lynx::Merge(const Lynx& other) { dictionary.Merge(other.dictionary); }

void Lynx::Add(const Lynx& other) { dictionary.Add(other.dictionary); }

void Lynx::Subtract(const Lynx& other) { dictionary.Subtract(other.dictionary); }

double Lynx::Similarity(const Lynx& other, Hypertext* hypertext) const {
    return dictionary.Similarity(other, hypertext);
}

std::vector<LynxRecord> Lynx::MostSimilarTo(Node* node, size_t count, bool exportableOnly) const {
    std::vector<LynxRecord> found;
    Hypertext* hypertext = node ? node->GetHypertext() : nullptr;
    LynxUpdater* updater = LynxUpdater::For(hypertext);
    Lynx* document = GetHypertextLynx(hypertext);
    if (!updater || !document || count == 0)
        return found;
    Wait();
    document->Wait();
    // Similarity(candidate) is the sum, over this index's words found in the
    // candidate, of ln(N / (d + k)) / candidate size: the weight of each of
    // this index's words is worked out once, and each candidate then only
    // adds up the weights of its own words.
    double n = static_cast<double>(HypertextFacade(hypertext).NodeCount());
    double k = n >= 12 ? 3.0 : 0.0;
    std::vector<LynxDictionary::Entry> mine = dictionary.Entries();
    if (mine.empty())
        return found;
    LynxDictionary::WordID top = mine.back().first;
    std::vector<double> weight(top + 1, 0.0);
    std::vector<char> present(top + 1, 0);
    for (const auto& e : mine) {
        int d = std::max(1, document->Dictionary().Get(e.first));
        weight[e.first] = std::log(n / (d + k));
        present[e.first] = 1;
    }
    const Node* original = node->GetOriginal();
    const Attribute* separator = hypertext->AttributeStorage()->Find("Separator");
    // What the factors need of the note itself, worked out once.
    long own = NoteSize() >= 0 ? NoteSize() : NodeText(node).TextSize() + static_cast<long>(node->Name().size());
    double p = static_cast<double>(own + 50);
    std::unique_lock<std::mutex> held = updater->Hold();
    for (Node* candidate = hypertext->Root()->Next(); candidate; candidate = candidate->Next()) {
        if (candidate == node || candidate == original || candidate->IsAlias() || candidate->IsAdornment())
            continue;
        const Lynx* lynx = updater->GetLynxHeld(candidate);
        if (!lynx)
            continue;
        double sum = 0.0;
        size_t words = 0;
        lynx->dictionary.Sync([&] {
            words = lynx->dictionary.entries.size();
            for (const auto& e : lynx->dictionary.entries) {
                if (e.first > top)
                    break;
                if (present[e.first])
                    sum += weight[e.first];
            }
        });
        if (words == 0)
            continue;
        double similarity = sum / static_cast<double>(words);
        // The factors are positive: a score that cannot reach the threshold
        // needs no more work.
        if (similarity <= 0.0)
            continue;
        if ((separator && candidate->GetBoolean(separator)) || (exportableOnly && !IsExportable(candidate)))
            continue;
        long size = lynx->NoteSize();
        if (size < 0)
            size = NodeText(candidate).TextSize() + static_cast<long>(candidate->Name().size());
        double q = static_cast<double>(size + 50);
        double lengthFactor = p * q / ((p + q) * std::sqrt(p * p + q * q));
        double score = similarity * lengthFactor * PrototypeFactor(node, candidate);
        if (score < 0.001)
            continue;
        found.push_back({candidate, score});
    }
    held.unlock();
    size_t keep = std::min(count, found.size());
    std::partial_sort(found.begin(), found.begin() + static_cast<long>(keep), found.end(),
                      [](const LynxRecord& a, const LynxRecord& b) { return b < a; });
    found.resize(keep);
    return found;
}

std::vector<WordRecord> Lynx::CommonWords(size_t count, const WordList& stopList) const {
    Wait();
    std::vector<WordRecord> words;
    for (auto& [word, n] : dictionary.Words())
        if (!stopList.Has(word))
            words.push_back({word, static_cast<double>(n)});
    size_t keep = std::min(count, words.size());
    std::partial_sort(words.begin(), words.begin() + static_cast<long>(keep), words.end(),
                      [](const WordRecord& a, const WordRecord& b) { return b < a; });
    words.erase(words.begin() + static_cast<long>(keep), words.end());
    return words;
}

std::vector<WordRecord> Lynx::CommonWordsAlphabetically(size_t count, const WordList& stopList) const {
    std::vector<WordRecord> words = CommonWords(count, stopList);
    std::sort(words.begin(), words.end(), WordRecord::byName);
    return words;
}

void Lynx::IndexNode(Node* node) {
    if (!IsExportable(node))
        return;
    node->NeedsToBeIndexed(false);
    if (LynxUpdater* updater = LynxUpdater::For(node->GetHypertext()))
        updater->Add(node);
}

STime Lynx::LastIndexed() const {
    std::lock_guard<std::mutex> guard(timeLock);
    return lastIndexed;
}

void Lynx::LastIndexed(const STime& time) {
    std::lock_guard<std::mutex> guard(timeLock);
    lastIndexed = time;
}

double Lynx::TextLengthFactor(const Node* a, const Node* b) {
    double p = static_cast<double>(NodeText(a).TextSize() + static_cast<long>(a->Name().size()) + 50);
    double q = static_cast<double>(NodeText(b).TextSize() + static_cast<long>(b->Name().size()) + 50);
    return p * q / ((p + q) * std::sqrt(p * p + q * q));
}

namespace {

// The last prototype up the chain; a loop ends the walk where it closes.
const Node* FinalPrototype(const Node* n) {
    std::unordered_set<const Node*> seen;
    const Node* p = n->GetPrototype();
    while (p && seen.insert(p).second) {
        const Node* next = p->GetPrototype();
        if (!next)
            break;
        p = next;
    }
    return p;
}

} // namespace

double Lynx::PrototypeFactor(const Node* a, const Node* b) {
    const Node* pa = a->GetPrototype();
    const Node* pb = b->GetPrototype();
    if (!pa && !pb)
        return 1.0;
    if (!pa || !pb)
        return 0.75;
    if (pa == pb)
        return 2.0;
    return FinalPrototype(a) == FinalPrototype(b) ? 1.25 : 0.75;
}

bool Lynx::IsExportable(const Node* node) {
    if (!node || node->Invalid() || node->GetBoolean("HTMLDontExport"))
        return false;
    for (const Node* f = node->Father(); f && f->Father(); f = f->Father())
        if (!f->GetBoolean("HTMLExportChildren"))
            return false;
    return true;
}

Lynx* Lynx::GetHypertextLynx(Hypertext* hypertext) {
    LynxUpdater* updater = LynxUpdater::For(hypertext);
    return updater ? &updater->DocumentLynx() : nullptr;
}

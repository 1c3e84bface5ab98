#include "LynxUpdater.h"

#include <algorithm>
#include <unordered_map>

#include "Attribute.h"
#include "Hooks.h"
#include "Hypertext.h"
#include "LynxWords.h"
#include "Node.h"
#include "NodeFacade.h"
#include "NodeHelpers.h"
#include "Props.h"

namespace {

std::mutex& RegistryLock() {
    static std::mutex* lock = new std::mutex;
    return *lock;
}

std::unordered_map<const Hypertext*, LynxUpdater*>& Registry() {
    static auto* registry = new std::unordered_map<const Hypertext*, LynxUpdater*>;
    return *registry;
}

// The updater a document owns when action code asked for its indexes and
// no one had made an updater for it.
class UpdaterPart : public DocumentPart {
public:
    explicit UpdaterPart(Hypertext* hypertext) : updater(hypertext) {}
    LynxUpdater updater;
};

const char* const kUpdaterPart = "text.LynxUpdater";

} // namespace

void InstallTextHooks() {
    static std::once_flag once;
    std::call_once(once, [] {
        Hooks& hooks = EditHooks();
        hooks.textChanged = [](Node* note) {
            if (LynxUpdater* updater = LynxUpdater::For(note ? note->GetHypertext() : nullptr))
                updater->TextChanged(note);
        };
        hooks.noteHasWord = [](Node* note, const std::string& word) {
            Hypertext* hypertext = note ? note->GetHypertext() : nullptr;
            if (!hypertext || note->Invalid() || hypertext->IsClosing())
                return false;
            return LynxUpdater::Ensure(hypertext).HasWord(note, word);
        };
        hooks.mostSimilarNotes = [](Node* note, size_t count, const Node* asking) {
            Hypertext* hypertext = note ? note->GetHypertext() : nullptr;
            if (!hypertext || note->Invalid() || hypertext->IsClosing())
                return std::vector<Node*>();
            return LynxUpdater::Ensure(hypertext).MostSimilar(note, count, asking);
        };
        hooks.relatedWords = [](Node* note, const std::string& word, size_t count) {
            Hypertext* hypertext = note ? note->GetHypertext() : nullptr;
            if (!hypertext || note->Invalid() || hypertext->IsClosing())
                return std::vector<std::string>();
            return LynxUpdater::Ensure(hypertext).RelatedWords(word, count, note);
        };
    });
}

LynxUpdater::LynxUpdater(Hypertext* h)
    : hypertext(h), document(std::make_unique<Lynx>()), queue("com.morvent.rylvane.lynxUpdater", 1) {
    // The document index starts as never merged, so that the first merge
    // runs at once.
    document->LastIndexed(STime::Never());
    std::lock_guard<std::mutex> guard(RegistryLock());
    Registry()[hypertext] = this;
    InstallTextHooks();
}

LynxUpdater::~LynxUpdater() {
    {
        std::lock_guard<std::mutex> guard(RegistryLock());
        auto it = Registry().find(hypertext);
        if (it != Registry().end() && it->second == this)
            Registry().erase(it);
    }
    queue.CancelAllOperations();
    queue.WaitUntilAllOperationsAreFinished();
    document.reset();
}

LynxUpdater* LynxUpdater::For(const Hypertext* hypertext) {
    if (!hypertext)
        return nullptr;
    std::lock_guard<std::mutex> guard(RegistryLock());
    auto it = Registry().find(hypertext);
    return it == Registry().end() ? nullptr : it->second;
}

LynxUpdater& LynxUpdater::Ensure(Hypertext* hypertext) {
    if (LynxUpdater* updater = For(hypertext))
        return *updater;
    auto* part = static_cast<UpdaterPart*>(
        hypertext->Part(kUpdaterPart, [hypertext] { return std::make_unique<UpdaterPart>(hypertext); }));
    // An updater made for a while beside the document (by a command) takes
    // the document's place in the registry and leaves it empty when it
    // goes: the document's own updater stands there again.
    std::lock_guard<std::mutex> guard(RegistryLock());
    auto& registered = Registry()[hypertext];
    if (!registered)
        registered = &part->updater;
    return *registered;
}

Lynx* LynxUpdater::GetLynx(const Node* node) const {
    if (!node)
        return nullptr;
    std::lock_guard<std::mutex> guard(lock);
    auto it = notes.find(node->GetID().GetID());
    return it == notes.end() ? nullptr : it->second.get();
}

Lynx* LynxUpdater::GetLynxHeld(const Node* node) const {
    auto it = notes.find(node->GetID().GetID());
    return it == notes.end() ? nullptr : it->second.get();
}

Lynx& LynxUpdater::LynxFor(const Node* node) {
    std::lock_guard<std::mutex> guard(lock);
    auto& slot = notes[node->GetID().GetID()];
    if (!slot)
        slot = std::make_unique<Lynx>();
    return *slot;
}

std::vector<const Attribute*> LynxUpdater::IndexedAttributes() const {
    std::vector<const Attribute*> attributes;
    Props* props = hypertext ? hypertext->AttributeStorage() : nullptr;
    if (!props)
        return attributes;
    for (const Attribute* a : props->InTreeOrder())
        if (a->IsUserAttribute() && !a->IsAttributeCategory() &&
            (a->GetType() == AttributeType::kString || a->IsSet() || a->IsList()))
            attributes.push_back(a);
    return attributes;
}

std::string LynxUpdater::IndexText(const Node* node) const { return IndexText(node, IndexedAttributes()); }

std::string LynxUpdater::IndexText(const Node* node, const std::vector<const Attribute*>& attributes) const {
    // Scanning the parts one after another counts the same words as scanning
    // them joined by line ends.
    std::string text = NodeText(node).GetText();
    text += "\n";
    text += node->Name();
    for (const Attribute* a : attributes) {
        text += "\n";
        text += node->GetString(a);
    }
    return text;
}

void LynxUpdater::Store(uint32_t id, const std::string& text, long noteSize) {
    Lynx* lynx;
    {
        std::lock_guard<std::mutex> guard(lock);
        auto& slot = notes[id];
        if (!slot)
            slot = std::make_unique<Lynx>();
        lynx = slot.get();
    }
    lynx->Scan(text);
    lynx->NoteSize(noteSize);
    lynx->LastIndexed(STime::Now());
    generation.fetch_add(1);
}

void LynxUpdater::Add(Node* node) {
    if (!node || node->IsAlias() || node->Invalid())
        return;
    // The note is read here, on the thread that owns it; the words are
    // counted on the queue.
    uint32_t id = node->GetID().GetID();
    std::string text = IndexText(node);
    long size = NoteSize(node);
    {
        std::lock_guard<std::mutex> guard(suspendLock);
        if (suspended) {
            held.push_back({id, std::move(text), size});
            return;
        }
    }
    queue.AddOperation([this, id, size, text = std::move(text)] { Store(id, text, size); });
}

void LynxUpdater::IndexNow(Node* node) {
    if (!node || node->IsAlias() || node->Invalid())
        return;
    Store(node->GetID().GetID(), IndexText(node), NoteSize(node));
}

void LynxUpdater::IndexAll() {
    std::vector<const Attribute*> attributes = IndexedAttributes();
    HypertextFacade(hypertext).Apply([&](Node* n) {
        if (n->IsAlias() || !Lynx::IsExportable(n))
            return;
        n->NeedsToBeIndexed(false);
        Store(n->GetID().GetID(), IndexText(n, attributes), NoteSize(n));
    });
    document->MergeNow(hypertext);
    document->Wait();
}

long LynxUpdater::NoteSize(const Node* node) {
    return NodeText(node).TextSize() + static_cast<long>(node->Name().size());
}

void LynxUpdater::Wait() { queue.WaitUntilAllOperationsAreFinished(); }

void LynxUpdater::Suspend() {
    std::lock_guard<std::mutex> guard(suspendLock);
    suspended = true;
}

void LynxUpdater::Resume() {
    std::vector<Held> waiting;
    {
        std::lock_guard<std::mutex> guard(suspendLock);
        suspended = false;
        waiting.swap(held);
    }
    for (Held& h : waiting)
        queue.AddOperation([this, h = std::move(h)] { Store(h.id, h.text, h.size); });
}

void LynxUpdater::TextChanged(Node* node) {
    if (!node || node->IsAlias())
        return;
    node->NeedsToBeIndexed(true);
    // While the document is read, its notes are indexed when it is ready.
    if (hypertext->IsBeingRead())
        return;
    node->NeedsToBeIndexed(false);
    Add(node);
}

bool LynxUpdater::HasWord(Node* node, const std::string& word) {
    if (!node || node->Invalid())
        return false;
    node = node->GetOriginal();
    // Changes queued for indexing are counted first.
    Wait();
    Lynx* lynx = GetLynx(node);
    if ((!lynx || node->NeedsToBeIndexed()) && Lynx::IsExportable(node)) {
        node->NeedsToBeIndexed(false);
        IndexNow(node);
        lynx = GetLynx(node);
    }
    return lynx && lynx->Get(word) > 0;
}

std::vector<Node*> LynxUpdater::MostSimilar(Node* node, size_t count, const Node* asking) {
    if (!node || node->Invalid() || count == 0)
        return {};
    std::lock_guard<std::mutex> guard(similarLock);
    IndexAllOnce();
    Wait();
    uint64_t now = generation.load();
    if (now != mergedAt) {
        mergedAt = now;
        document->Merge(hypertext);
    }
    long notes = HypertextFacade(hypertext).NodeCount();
    uint32_t id = node->GetID().GetID();
    // The note that asked first asking again, after others, begins a new pass.
    bool newPass = !asking || (asking == remembered.passStart && remembered.askedOthers);
    if (!newPass && remembered.node == node && remembered.id == id && remembered.count == count &&
        remembered.generation == now && remembered.notes == notes) {
        if (asking != remembered.passStart)
            remembered.askedOthers = true;
        return remembered.found;
    }
    std::vector<Node*> found;
    // An alias has no index of its own: its original's words stand for it.
    if (const Lynx* lynx = GetLynx(node->GetOriginal()))
        for (const LynxRecord& record : lynx->MostSimilarTo(node, count, false))
            found.push_back(record.node);
    remembered = Remembered{node, id, count, now, notes, found, asking, false};
    return found;
}

void LynxUpdater::IndexAllOnce() {
    if (allIndexed)
        return;
    allIndexed = true;
    IndexAll();
    mergedAt = generation.load();
}

namespace {

// Whether a note's index counts for RelatedWords.
bool CountsForRelatedWords(const Node* n) { return !n->IsAlias() && !n->IsAdornment() && !n->IsHidden(); }

} // namespace

void LynxUpdater::MakePostings() {
    // Under similarLock.
    related.indexes.clear();
    related.postings.clear();
    std::unique_lock<std::mutex> held = Hold();
    Node* root = hypertext->Root();
    for (Node* n = root ? root->Next() : nullptr; n; n = n->Next()) {
        if (!CountsForRelatedWords(n))
            continue;
        const Lynx* lynx = GetLynxHeld(n);
        if (!lynx)
            continue;
        auto at = static_cast<uint32_t>(related.indexes.size());
        bool used = false;
        for (const auto& [id, times] : lynx->Dictionary().Entries()) {
            if (times <= 0)
                continue;
            std::vector<uint32_t>& notesHolding = related.postings[id];
            if (notesHolding.size() < kRelatedWordsNoteLimit) {
                notesHolding.push_back(at);
                used = true;
            }
        }
        if (used)
            related.indexes.push_back(lynx);
    }
    related.postingsMade = true;
}

std::vector<std::string> LynxUpdater::RelatedWords(const std::string& word, size_t count, const Node* asking) {
    using WordID = LynxWords::WordID;
    std::string filtered = Lynx::Filter(word);
    if (count == 0 || filtered.empty())
        return {};
    std::lock_guard<std::mutex> guard(similarLock);
    // A word is known to the table of words only once a note holding it is
    // indexed: the notes are indexed before the word is looked up.
    IndexAllOnce();
    Wait();
    WordID wanted = 0;
    if (!LynxWords::Shared().Find(filtered, wanted))
        return {};
    uint64_t now = generation.load();
    long notes = HypertextFacade(hypertext).NodeCount();
    // A pass of questions (a query asking note after note) ends when the
    // note that asked first asks again after others, or when an index
    // changes or notes come or go.
    bool newPass = !asking || (asking == related.passStart && related.askedOthers) || related.generation != now ||
                   related.notes != notes;
    if (newPass) {
        related.passStart = asking;
        related.askedOthers = false;
        related.generation = now;
        related.notes = notes;
        related.postingsMade = false;
        related.postings.clear();
        related.indexes.clear();
        related.found.clear();
        related.count = 0;
    } else {
        if (asking != related.passStart)
            related.askedOthers = true;
        // The same question within one pass gets the same answer.
        if (related.word == wanted && related.count == count)
            return related.found;
        // Another question in the same pass: the notes holding each word are
        // listed once, so that a query asking about a word per note does not
        // walk the outline for each.
        if (!related.postingsMade)
            MakePostings();
    }

    // How many of the notes holding the word hold each other word: the first
    // kRelatedWordsNoteLimit such notes in outline order are counted.
    std::unordered_map<WordID, int> shared;
    auto count_words = [&](const Lynx* lynx) {
        for (const auto& [id, times] : lynx->Dictionary().Entries())
            if (times > 0 && id != wanted)
                ++shared[id];
    };
    if (related.postingsMade) {
        auto it = related.postings.find(wanted);
        if (it != related.postings.end())
            for (uint32_t at : it->second)
                count_words(related.indexes[at]);
    } else {
        std::unique_lock<std::mutex> held = Hold();
        Node* root = hypertext->Root();
        size_t examined = 0;
        for (Node* n = root ? root->Next() : nullptr; n && examined < kRelatedWordsNoteLimit; n = n->Next()) {
            if (!CountsForRelatedWords(n))
                continue;
            const Lynx* lynx = GetLynxHeld(n);
            if (!lynx || lynx->Dictionary().Get(wanted) <= 0)
                continue;
            ++examined;
            count_words(lynx);
        }
    }
    std::vector<std::pair<const std::string*, int>> ranked;
    ranked.reserve(shared.size());
    for (const auto& [id, notesSharing] : shared)
        ranked.emplace_back(&LynxWords::Shared().Word(id), notesSharing);
    size_t keep = std::min(count, ranked.size());
    std::partial_sort(ranked.begin(), ranked.begin() + static_cast<long>(keep), ranked.end(),
                      [](const auto& a, const auto& b) {
                          return a.second != b.second ? a.second > b.second : *a.first < *b.first;
                      });
    std::vector<std::string> found;
    found.reserve(keep);
    for (size_t i = 0; i < keep; ++i)
        found.push_back(*ranked[i].first);
    related.word = wanted;
    related.count = count;
    related.found = found;
    return found;
}

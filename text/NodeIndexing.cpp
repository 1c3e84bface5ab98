#include "NodeIndexing.h"

#include "LynxUpdater.h"
#include "Node.h"
#include "WordList.h"

namespace {

LynxUpdater* UpdaterOf(const Node* node) { return node ? LynxUpdater::For(node->GetHypertext()) : nullptr; }

} // namespace

Lynx* NodeIndexing::GetLynx() const {
    LynxUpdater* updater = UpdaterOf(node);
    return updater ? updater->GetLynx(node) : nullptr;
}

void NodeIndexing::Index() const {
    if (!node || node->Invalid())
        return;
    if (LynxUpdater* updater = UpdaterOf(node))
        updater->LynxFor(node).IndexNode(node);
}

void NodeIndexing::IndexIfNeeded() const {
    if (!NeedsToBeIndexed())
        return;
    Index();
    NeedsToBeIndexed(false);
}

bool NodeIndexing::NeedsToBeIndexed() const { return node && node->NeedsToBeIndexed(); }

void NodeIndexing::NeedsToBeIndexed(bool n) const {
    if (node)
        node->NeedsToBeIndexed(n);
}

double NodeIndexing::Similarity(const Node* a, const Node* b) {
    LynxUpdater* updater = UpdaterOf(a);
    if (!updater || !b)
        return 0.0;
    const Lynx* la = updater->GetLynx(a);
    const Lynx* lb = updater->GetLynx(b);
    return la && lb ? la->Similarity(*lb, a->GetHypertext()) : 0.0;
}

double NodeIndexing::Similarity(const Node* other) const { return Similarity(node, other); }

bool NodeIndexing::HasWord(const std::string& word) const {
    const Lynx* lynx = GetLynx();
    return lynx && lynx->Get(word) > 0;
}

std::vector<LynxRecord> NodeIndexing::MostSimilar(size_t count, bool exportableOnly) const {
    const Lynx* lynx = GetLynx();
    return lynx ? lynx->MostSimilarTo(node, count, exportableOnly) : std::vector<LynxRecord>();
}

std::vector<WordRecord> NodeIndexing::CommonWords(size_t count, bool section, bool alphabetical) const {
    LynxUpdater* updater = UpdaterOf(node);
    if (!updater)
        return {};
    WordList stop = WordList::For(node->GetHypertext());
    Lynx gathered;
    const Lynx* lynx = updater->GetLynx(node);
    if (section) {
        gathered.ForSection(node);
        lynx = &gathered;
    }
    if (!lynx)
        return {};
    return alphabetical ? lynx->CommonWordsAlphabetically(count, stop) : lynx->CommonWords(count, stop);
}

void NodeIndexing::Suspend() const {
    if (LynxUpdater* updater = UpdaterOf(node))
        updater->Suspend();
}

void NodeIndexing::Resume() const {
    if (LynxUpdater* updater = UpdaterOf(node))
        updater->Resume();
}

// Resolving designators, as every query and export does for each note: words,
// indexed children, paths and names from notes of a document of 2,020 notes
// (20 containers of 100 notes each), once through the static entry points
// (parsed per call) and once through a kept HTPath.
#include <benchmark/benchmark.h>

#include <string>
#include <vector>

#include "HTPath.h"
#include "Hypertext.h"
#include "MatchList.h"
#include "NodeHelpers.h"

namespace {

struct Document {
    Hypertext doc;
    std::vector<Node*> notes;
    Document() {
        Node* after = nullptr;
        for (int i = 0; i < 20; ++i) {
            Node* top = NodeMaker(&doc).MakeNode("Top" + std::to_string(i), nullptr, after, 0, 0);
            after = top;
            Node* elder = nullptr;
            for (int j = 0; j < 100; ++j) {
                elder = NodeMaker(&doc).MakeNode("Note" + std::to_string(j), top, elder, 0, 0);
                notes.push_back(elder);
            }
        }
    }
};

Document& Shared() {
    static Document document;
    return document;
}

void Resolve(benchmark::State& state, const std::string& designator) {
    Document& d = Shared();
    MatchList matches;
    size_t found = 0;
    for (auto _ : state)
        for (Node* n : d.notes)
            found += HTPath::Get(n, designator, matches) != nullptr;
    benchmark::DoNotOptimize(found);
    state.SetItemsProcessed(static_cast<int64_t>(state.iterations() * d.notes.size()));
}

void ResolveKept(benchmark::State& state, const std::string& designator) {
    Document& d = Shared();
    MatchList matches;
    HTPath path(designator);
    size_t found = 0;
    for (auto _ : state)
        for (Node* n : d.notes)
            found += path.Get(n, matches) != nullptr;
    benchmark::DoNotOptimize(found);
    state.SetItemsProcessed(static_cast<int64_t>(state.iterations() * d.notes.size()));
}

void ChooseKept(benchmark::State& state, const std::string& designator) {
    Document& d = Shared();
    MatchList matches;
    HTPath path(designator);
    size_t found = 0;
    for (auto _ : state)
        for (size_t i = 0; i < d.notes.size(); i += 100)
            found += path.All(d.notes[i], matches).size();
    benchmark::DoNotOptimize(found);
    state.SetItemsProcessed(static_cast<int64_t>(state.iterations() * (d.notes.size() / 100)));
}

BENCHMARK_CAPTURE(Resolve, parent, std::string("parent"));
BENCHMARK_CAPTURE(Resolve, indexed_child, std::string("child[-2](parent)"));
BENCHMARK_CAPTURE(Resolve, path, std::string("/Top7/Note42"));
BENCHMARK_CAPTURE(Resolve, sibling_name, std::string("../Note50"));
BENCHMARK_CAPTURE(ResolveKept, parent, std::string("parent"));
BENCHMARK_CAPTURE(ResolveKept, path, std::string("/Top7/Note42"));
BENCHMARK_CAPTURE(ChooseKept, siblings, std::string("siblings"));

}  // namespace

BENCHMARK_MAIN();

// The list functions of action code over the 100,000-note document: a
// 10,000-item list of note paths sorted by an attribute of the notes
// (`.sort($Name)`, which has to find each note by its path), and the same
// list sorted as plain text and counted. The expression is compiled once.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <memory>
#include <string>

#include "AAValue.h"
#include "Action.h"
#include "ActionHooks.h"
#include "AttributeType.h"
#include "BenchDocument.h"
#include "MatchList.h"
#include "NodeFacade.h"
#include "NodeHelpers.h"

namespace {

constexpr size_t kItems = 10000;

struct Fixture {
    std::unique_ptr<Hypertext> doc;
    // The paths of every tenth note, from the last backwards, so that the
    // sort has work to do.
    std::string paths;
};

Fixture* MakeFixture(bool withAlias) {
    InstallActionHooks();
    auto* f = new Fixture;
    f->doc = bench_document::MakeDocument();
    NodeVector notes;
    HypertextFacade(f->doc.get()).Apply([&notes, f](Node* note) {
        if (note != f->doc->Root())
            notes.push_back(note);
    });
    size_t taken = 0;
    for (size_t i = notes.size(); i-- > 0 && taken < kItems;) {
        if (i % 10 != 3)
            continue;
        if (taken++)
            f->paths += ';';
        f->paths += NodeFacade(notes[i]).HTPath();
    }
    // An alias beside every thousandth note: the name index no longer speaks
    // for those parents' children, which are then looked over once each.
    if (withAlias)
        for (size_t i = 0; i < notes.size(); i += 1000)
            NodeMaker(f->doc.get()).MakeAlias(notes.front(), notes[i]->Father(), nullptr);
    return f;
}

Fixture& Shared(bool withAlias = false) {
    static Fixture* plain = MakeFixture(false);
    if (!withAlias)
        return *plain;
    static Fixture* aliased = MakeFixture(true);
    return *aliased;
}

void Run(benchmark::State& state, const std::string& code, bool withAlias = false) {
    Fixture& f = Shared(withAlias);
    AAValuePtr tree = Action::ParseExpression(code, true);
    Node* note = f.doc->Root()->Son();
    std::string answer;
    for (auto _ : state) {
        MatchList matches;
        matches.Bind("items", f.paths, AttributeType::kList);
        answer = AAValue::ComputeValue(tree.get(), note, matches).AsString();
    }
    size_t count = answer.empty() ? 0 : std::count(answer.begin(), answer.end(), ';') + 1;
    state.counters["items"] = static_cast<double>(count);
    if (count != kItems)
        state.SkipWithError("the answer lost items");
}

void BM_SortPathsByName(benchmark::State& state) { Run(state, "items.sort($Name)"); }
BENCHMARK(BM_SortPathsByName)->Unit(benchmark::kMillisecond);

void BM_SortPathsByNameWithAliases(benchmark::State& state) { Run(state, "items.sort($Name)", true); }
BENCHMARK(BM_SortPathsByNameWithAliases)->Unit(benchmark::kMillisecond);

void BM_SortPathsByPriority(benchmark::State& state) { Run(state, "items.nsort($Priority)"); }
BENCHMARK(BM_SortPathsByPriority)->Unit(benchmark::kMillisecond);

void BM_SortPathsAsText(benchmark::State& state) { Run(state, "items.isort"); }
BENCHMARK(BM_SortPathsAsText)->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();

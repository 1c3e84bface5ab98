// The group functions and a text function of action code on the 100,000-note
// document: find over every note, sum over every note, collect over the
// children of one large container, and a regular-expression replace over
// the text of a note of 100 KB. Each expression is parsed once and computed
// on every pass, as compiled code in an attribute is.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <memory>
#include <random>

#include "AAValue.h"
#include "Action.h"
#include "ActionHooks.h"
#include "BenchDocument.h"
#include "MatchList.h"
#include "NodeFacade.h"
#include "NodeHelpers.h"

namespace {

constexpr int kContainerChildren = 10000;
constexpr size_t kLargeText = 100 * 1024;

struct Fixture {
    std::unique_ptr<Hypertext> doc;
    Node* first = nullptr;
    Node* container = nullptr;
    Node* large = nullptr;
};

Fixture& Shared() {
    static Fixture* fixture = [] {
        InstallActionHooks();
        auto* f = new Fixture;
        f->doc = bench_document::MakeDocument();
        f->first = f->doc->Root()->Son();
        NodeMaker maker(f->doc.get());
        Node* some = maker.MakeDontInitialize("Some", nullptr, nullptr, 0, 0);
        f->container = maker.MakeDontInitialize("Container", some, nullptr, 0, 0);
        Node* last = nullptr;
        for (int i = 0; i < kContainerChildren; ++i)
            last = maker.MakeDontInitialize("child " + std::to_string(i), f->container, last, i % 13, i % 7);
        f->large = maker.MakeDontInitialize("Large", nullptr, nullptr, 0, 0);
        std::mt19937 random(7);
        std::string text;
        while (text.size() < kLargeText)
            text += bench_document::Words(random, 60) + "\n";
        text.resize(kLargeText);
        NodeText(f->large).SetText(text);
        f->doc->UpdateOutlineOrder();
        return f;
    }();
    return *fixture;
}

// Times `expression` computed on `note`; the answer's size in items (or
// characters, with `countCharacters`) is shown, and a pass whose answer is
// not `expected` items long fails the benchmark.
void TimeExpression(benchmark::State& state, const std::string& expression, Node* note, long expected,
                    bool countCharacters = false) {
    AAValuePtr tree = Action::ParseExpression(expression);
    if (!tree) {
        state.SkipWithError("the expression did not parse");
        return;
    }
    MatchList matches;
    matches.CurrentThat(note);
    std::string answer;
    for (auto _ : state) {
        answer = AAValue::ComputeValue(tree.get(), note, matches).AsString();
        benchmark::DoNotOptimize(answer.data());
    }
    long size = countCharacters ? static_cast<long>(answer.size())
                                : (answer.empty() ? 0 : 1 + static_cast<long>(std::count(answer.begin(), answer.end(), ';')));
    state.counters["answer_size"] = static_cast<double>(size);
    if (expected >= 0 && size != expected)
        state.SkipWithError(("unexpected answer size " + std::to_string(size)).c_str());
}

void BM_FindRed(benchmark::State& state) {
    Fixture& f = Shared();
    // One note in five of the document is red.
    TimeExpression(state, "find($Color==\"red\")", f.first, bench_document::kNotes / 5);
}
BENCHMARK(BM_FindRed)->Unit(benchmark::kMillisecond);

void BM_SumWidth(benchmark::State& state) {
    Fixture& f = Shared();
    TimeExpression(state, "sum(all, $Width)", f.first, 1);
    state.counters["sum"] = std::stod(Action::Evaluate(f.first, "sum(all, $Width)"));
}
BENCHMARK(BM_SumWidth)->Unit(benchmark::kMillisecond);

void BM_CollectChildrenNames(benchmark::State& state) {
    Fixture& f = Shared();
    TimeExpression(state, "collect(children(/Some/Container), $Name)", f.first, kContainerChildren);
}
BENCHMARK(BM_CollectChildrenNames)->Unit(benchmark::kMillisecond);

void BM_ReplaceInLargeText(benchmark::State& state) {
    Fixture& f = Shared();
    TimeExpression(state, "$Text.replace(\"\\bthe\\b\",\"THE\")", f.large, static_cast<long>(kLargeText), true);
}
BENCHMARK(BM_ReplaceInLargeText)->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();

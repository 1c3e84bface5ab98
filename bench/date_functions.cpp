// Note tests and a date difference, each as a query over every note of
// the 100,000-note benchmark document, the way an agent runs them.
//
// Targets (ours): the note test resolves its designator once and then only
// walks each note's parents, so a pass stays under 50 ms; the difference
// reads two dates a note and asks the calendar for the whole days between
// them, so a pass stays under 1 s. The program runs with the others under
// scripts/run-bench, which finds every bench_* program of a build.
#include <benchmark/benchmark.h>

#include <memory>

#include "ActionHooks.h"
#include "BenchDocument.h"
#include "NoteQuery.h"

namespace {

Hypertext* Shared() {
    static Hypertext* doc = [] {
        InstallActionHooks();
        return bench_document::MakeDocument().release();
    }();
    return doc;
}

void BM_DescendedFromQuery(benchmark::State& state) {
    Hypertext* doc = Shared();
    // The container "note 500" holds 99 notes.
    NoteQuery query("descendedFrom(/note 500)", true);
    size_t found = 0;
    for (auto _ : state)
        found = query.FindAll(doc).size();
    state.counters["found"] = static_cast<double>(found);
    if (found != 99)
        state.SkipWithError("descendedFrom found the wrong notes");
}
BENCHMARK(BM_DescendedFromQuery)->Unit(benchmark::kMillisecond);

void BM_DuplicateNameQuery(benchmark::State& state) {
    Hypertext* doc = Shared();
    // Every note of the benchmark document has a name of its own.
    NoteQuery query("isDuplicateName()", true);
    size_t found = 1;
    for (auto _ : state)
        found = query.FindAll(doc).size();
    state.counters["found"] = static_cast<double>(found);
    if (found != 0)
        state.SkipWithError("isDuplicateName found notes");
}
BENCHMARK(BM_DuplicateNameQuery)->Unit(benchmark::kMillisecond);

void BM_DaysBetweenQuery(benchmark::State& state) {
    Hypertext* doc = Shared();
    // Modified is 100,000,000 seconds (1,157 days) after Created, plus 184
    // seconds more for each later note: about the later half of the notes
    // are more than 1,263 days apart.
    NoteQuery query("days($Created, $Modified) > 1263", true);
    size_t found = 0;
    for (auto _ : state)
        found = query.FindAll(doc).size();
    state.counters["found"] = static_cast<double>(found);
    if (found == 0)
        state.SkipWithError("days found no notes");
}
BENCHMARK(BM_DaysBetweenQuery)->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();

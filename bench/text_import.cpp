// The word index and the importers at scale.
//
// BM_Index100kNotes indexes the notes of the read benchmark's document
// (100,000 notes of 60 words, with their user attributes) and merges the
// document index; BM_MostSimilarTo ranks every note against one. The merge
// runs on the index's own queue while the caller waits, so the indexing is
// timed by the CPU time of the process: one thread works at a time, and the
// figure is what one core spends.
//
// BM_ImportCSV100k reads a table of 100,000 rows and 10 columns (text,
// numbers, booleans and dates) into notes; BM_ImportOPML100k an outline of
// 100,000 items, 1,000 top-level items of 99 children each.
#include <benchmark/benchmark.h>

#include <memory>
#include <random>
#include <string>

#include "AttributeInfo.h"
#include "Attribute.h"
#include "Hypertext.h"
#include "ImportManager.h"
#include "ImportableText.h"
#include "LynxUpdater.h"
#include "Node.h"
#include "NodeHelpers.h"
#include "NodeIndexing.h"

#include "BenchDocument.h"

namespace {

using namespace bench_document;

Hypertext& SharedDocument() {
    static Hypertext* doc = MakeDocument().release();
    return *doc;
}

void BM_Index100kNotes(benchmark::State& state) {
    Hypertext& doc = SharedDocument();
    size_t words = 0;
    for (auto _ : state) {
        auto index = std::make_unique<LynxUpdater>(&doc);
        index->IndexAll();
        words = index->DocumentLynx().size();
        // The updater and its 100,000 indexes go outside the timing.
        state.PauseTiming();
        index.reset();
        state.ResumeTiming();
    }
    state.counters["notes"] = kNotes;
    state.counters["words"] = static_cast<double>(words);
}
BENCHMARK(BM_Index100kNotes)->Unit(benchmark::kMillisecond)->MinTime(2)->MeasureProcessCPUTime();

void BM_MostSimilarTo(benchmark::State& state) {
    Hypertext& doc = SharedDocument();
    LynxUpdater index(&doc);
    index.IndexAll();
    Node* query = doc.Root()->Son()->Son()->Brother();
    size_t found = 0;
    for (auto _ : state) {
        auto similar = NodeIndexing(query).MostSimilar(20);
        found = similar.size();
        benchmark::DoNotOptimize(similar);
    }
    state.counters["found"] = static_cast<double>(found);
}
BENCHMARK(BM_MostSimilarTo)->Unit(benchmark::kMillisecond)->MinTime(2);

std::string MakeCSV() {
    std::mt19937 random(7);
    std::string text = "Name,Priority,Cost,Done,Due,Status,Owner,Place,Notes,Score\n";
    static const char* const statuses[] = {"open", "done", "waiting", "someday"};
    for (int i = 0; i < kNotes; ++i) {
        text += "row " + std::to_string(i) + "," + std::to_string(i % 9 + 1) + ",\"$" +
                std::to_string(i % 5000) + ",00\"," + (i % 2 ? "true" : "false") + ",2026-" +
                std::to_string(i % 12 + 1) + "-" + std::to_string(i % 28 + 1) + "," + statuses[i % 4] +
                ",person " + std::to_string(i % 300) + ",\"" + Words(random, 2) + "\",\"" + Words(random, 6) +
                "\"," + std::to_string(i % 1000) + "." + std::to_string(i % 10) + "\n";
    }
    return text;
}

std::string MakeOPML() {
    std::mt19937 random(9);
    std::string text = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<opml version=\"2.0\"><head><title>Bench</title>"
                       "</head><body>\n";
    for (int i = 0; i < kNotes; ++i) {
        bool top = i % 100 == 0;
        if (top && i)
            text += "</outline>\n";
        text += "<outline text=\"item " + std::to_string(i) + "\" _note=\"" + Words(random, 8) + "\" status=\"" +
                (i % 2 ? "open" : "done") + "\"" + (top ? ">\n" : "/>\n");
    }
    text += "</outline>\n</body></opml>\n";
    return text;
}

void RunImport(benchmark::State& state, const std::string& text, ImportableText::Kind kind) {
    size_t made = 0;
    for (auto _ : state) {
        auto doc = std::make_unique<Hypertext>();
        ImportManager manager(doc.get(), nullptr);
        ImportableText item(text, kind);
        if (!manager.ImportIt(item))
            state.SkipWithError(manager.FailureMessage().c_str());
        manager.Finish();
        made = manager.CreatedCount();
        state.PauseTiming();
        doc.reset();
        state.ResumeTiming();
    }
    state.counters["notes"] = static_cast<double>(made);
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * text.size()));
}

void BM_ImportCSV100k(benchmark::State& state) {
    static const std::string text = MakeCSV();
    RunImport(state, text, ImportableText::Kind::CSV);
}
BENCHMARK(BM_ImportCSV100k)->Unit(benchmark::kMillisecond)->MinTime(2);

void BM_ImportOPML100k(benchmark::State& state) {
    static const std::string text = MakeOPML();
    RunImport(state, text, ImportableText::Kind::OPML);
}
BENCHMARK(BM_ImportOPML100k)->Unit(benchmark::kMillisecond)->MinTime(2);

} // namespace

BENCHMARK_MAIN();

// Cost of the system attribute table: every new document, also one about to
// be read from a file, builds it first.
#include <benchmark/benchmark.h>

#include "Hypertext.h"
#include "InitialAttributes.h"
#include "Props.h"

static void BM_BuildSystemTable(benchmark::State& state) {
    InitialAttributesForTalvik builder;
    for (auto _ : state) {
        Props props;
        builder.Build(&props);
        benchmark::DoNotOptimize(props.GetCount());
    }
}
BENCHMARK(BM_BuildSystemTable)->Unit(benchmark::kMicrosecond);

static void BM_NewDocument(benchmark::State& state) {
    for (auto _ : state) {
        Hypertext doc;
        benchmark::DoNotOptimize(doc.AttributeStorage());
    }
}
BENCHMARK(BM_NewDocument)->Unit(benchmark::kMicrosecond);

static void BM_LookupByName(benchmark::State& state) {
    Props props;
    InitialAttributesForTalvik().Build(&props);
    const char* names[] = {"Name", "Xpos", "HTMLCloud5End", "NoSuchThing", "ScrivenerNoteRTF", "Color2"};
    std::size_t i = 0;
    for (auto _ : state) {
        benchmark::DoNotOptimize(props.GetAttribute(names[i++ % 6]));
    }
}
BENCHMARK(BM_LookupByName);

BENCHMARK_MAIN();

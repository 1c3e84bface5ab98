// Costs of the value operations that run for every note: typed creation from
// text, list splitting, and comparison as sorting uses it.
#include <benchmark/benchmark.h>

#include "ArgList.h"
#include "SetList.h"
#include "Transformer.h"
#include "Value.h"

static void CreateNumber(benchmark::State& state) {
    for (auto _ : state) {
        ValuePtr v(Value::Create(AttributeType::kNumber, "1,234.5"));
        benchmark::DoNotOptimize(v->AsDouble());
    }
}
BENCHMARK(CreateNumber);

static void CreateSharedBoolean(benchmark::State& state) {
    for (auto _ : state) {
        ValuePtr v(Value::Create(AttributeType::kBoolean, "true"));
        benchmark::DoNotOptimize(v.get());
    }
}
BENCHMARK(CreateSharedBoolean);

static void CreateSet(benchmark::State& state) {
    for (auto _ : state) {
        ValuePtr v(Value::Create(AttributeType::kSet, "delta;alpha;charlie;bravo;alpha;echo"));
        benchmark::DoNotOptimize(v.get());
    }
}
BENCHMARK(CreateSet);

static void SplitList(benchmark::State& state) {
    std::string text;
    for (int i = 0; i < state.range(0); ++i) text += "item" + std::to_string(i) + ";";
    for (auto _ : state) {
        ArgList list(text);
        benchmark::DoNotOptimize(list.size());
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(SplitList)->Arg(10)->Arg(1000);

static void CompareCaseInsensitive(benchmark::State& state) {
    auto transformer = Transformer::Create("case-insensitive");
    StringValue a("Zürich Hauptbahnhof"), b("zurich hauptbahnhof");
    for (auto _ : state) benchmark::DoNotOptimize(a.compare(&b, transformer.get()));
}
BENCHMARK(CompareCaseInsensitive);

static void CompareNumbers(benchmark::State& state) {
    ValuePtr a(Value::ForDouble(1.5)), b(Value::ForInt(7));
    for (auto _ : state) benchmark::DoNotOptimize(a->compare(b.get()));
}
BENCHMARK(CompareNumbers);
BENCHMARK_MAIN();

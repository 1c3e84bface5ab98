// Building a large document: 100 top-level notes, 10 children each, 99
// grandchildren each (100,000 notes), 5 attributes set on each; then memory
// per note and lookups by id and by name.
#include <benchmark/benchmark.h>

#include <cstdio>
#include <malloc.h>
#include <fstream>
#include <memory>
#include <string>
#include <vector>

#include "Hypertext.h"
#include "Node.h"
#include "NodeHelpers.h"
#include "NodeIndex.h"

namespace {

long ResidentKiB() {
    std::ifstream status("/proc/self/status");
    std::string line;
    while (std::getline(status, line))
        if (line.rfind("VmRSS:", 0) == 0)
            return std::stol(line.substr(6));
    return 0;
}

void SetFive(Node* n, int i) {
    n->SetDouble("Xpos", i % 97);
    n->SetDouble("Ypos", i % 89);
    n->Set("MyString", "note " + std::to_string(i));
    n->SetLong("MyNumber", i);
    n->SetBoolean("MyBoolean", (i & 1) != 0);
}

// Makes the document without per-note renumbering, as a reader does, then
// numbers the outline once.
std::vector<Node*> Build(Hypertext& doc) {
    std::vector<Node*> all;
    all.reserve(100000);
    NodeMaker maker(&doc);
    int i = 0;
    Node* top = nullptr;
    for (int t = 0; t < 100; ++t) {
        top = maker.MakeDontInitialize("Top " + std::to_string(t), doc.Root(), top, 0, 0);
        SetFive(top, i++);
        all.push_back(top);
        Node* child = nullptr;
        for (int c = 0; c < 10; ++c) {
            child = maker.MakeDontInitialize("Child " + std::to_string(t) + "." + std::to_string(c), top, child, 0, 0);
            SetFive(child, i++);
            all.push_back(child);
            Node* grand = nullptr;
            for (int g = 0; g < 99; ++g) {
                grand = maker.MakeDontInitialize("G" + std::to_string(i), child, grand, 0, 0);
                SetFive(grand, i++);
                all.push_back(grand);
            }
        }
    }
    doc.UpdateOutlineOrder();
    return all;
}

void BM_MemoryPerNote(benchmark::State& state) {
    for (auto _ : state) {
        // Runs first, in a fresh process, so that freed memory kept by the
        // allocator does not hide the growth.
        long before = ResidentKiB();
        size_t heapBefore = mallinfo2().uordblks;
        auto doc = std::make_unique<Hypertext>();
        auto all = Build(*doc);
        long after = ResidentKiB();
        size_t heapAfter = mallinfo2().uordblks;
        state.counters["rss_bytes_per_note"] = (after - before) * 1024.0 / static_cast<double>(all.size());
        state.counters["heap_bytes_per_note"] =
            static_cast<double>(heapAfter - heapBefore) / static_cast<double>(all.size());
    }
}
BENCHMARK(BM_MemoryPerNote)->Unit(benchmark::kMillisecond)->Iterations(1);

void BM_Build100kNotes(benchmark::State& state) {
    for (auto _ : state) {
        auto doc = std::make_unique<Hypertext>();
        auto all = Build(*doc);
        benchmark::DoNotOptimize(all.data());
        state.PauseTiming();
        doc.reset();
        state.ResumeTiming();
    }
    state.counters["notes"] = 100000;
}
BENCHMARK(BM_Build100kNotes)->Unit(benchmark::kMillisecond)->Iterations(3);

struct Built {
    std::unique_ptr<Hypertext> doc = std::make_unique<Hypertext>();
    std::vector<Node*> all = Build(*doc);
};

Built& Shared() {
    static Built built;
    return built;
}

void BM_FindById(benchmark::State& state) {
    Built& b = Shared();
    size_t i = 0;
    for (auto _ : state) {
        Node* n = b.all[(i++ * 7919) % b.all.size()];
        benchmark::DoNotOptimize(b.doc->GetIndex()->Find(n->GetID().GetID()));
    }
}
BENCHMARK(BM_FindById);

void BM_FindByName(benchmark::State& state) {
    Built& b = Shared();
    b.doc->GetIndex()->UpdateIfNeeded();
    size_t i = 0;
    std::vector<std::string> names;
    for (size_t k = 0; k < 1000; ++k)
        names.push_back(b.all[(k * 7919) % b.all.size()]->Name());
    for (auto _ : state)
        benchmark::DoNotOptimize(b.doc->GetIndex()->Find(names[i++ % names.size()]));
}
BENCHMARK(BM_FindByName);

} // namespace

BENCHMARK_MAIN();

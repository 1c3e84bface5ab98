// Reading an inherited value through a prototype chain of depth 5, against
// reading a local value; and the storage of 100,000 notes that share 10
// prototypes.
#include <benchmark/benchmark.h>

#include <memory>
#include <string>
#include <vector>

#include "Hypertext.h"
#include "Node.h"
#include "NodeHelpers.h"
#include "Props.h"
#include "Value.h"

namespace {

struct Chain {
    std::unique_ptr<Hypertext> doc = std::make_unique<Hypertext>();
    Node* local = nullptr;
    Node* inheriting = nullptr;
    const Attribute* color = nullptr;

    Chain() {
        NodeMaker make(doc.get());
        Node* previous = nullptr;
        // p0 holds the value; p1..p4 inherit it, and the note sits five deep.
        for (int i = 0; i < 5; ++i) {
            Node* p = make.MakeNode("p" + std::to_string(i), nullptr, nullptr, 0, 0);
            if (previous)
                p->SetPrototype(previous, false);
            else
                p->Set("Color", "#123456");
            previous = p;
        }
        inheriting = make.MakeNode("note", nullptr, nullptr, 0, 0);
        inheriting->SetPrototype(previous, false);
        local = make.MakeNode("local", nullptr, nullptr, 0, 0);
        local->Set("Color", "#123456");
        color = doc->AttributeStorage()->GetAttribute("Color");
    }
};

Chain& Shared() {
    static Chain chain;
    return chain;
}

void BM_ReadLocal(benchmark::State& state) {
    Chain& c = Shared();
    for (auto _ : state)
        benchmark::DoNotOptimize(c.local->Get(c.color));
}
BENCHMARK(BM_ReadLocal);

void BM_ReadInheritedDepth5(benchmark::State& state) {
    Chain& c = Shared();
    for (auto _ : state)
        benchmark::DoNotOptimize(c.inheriting->Get(c.color));
}
BENCHMARK(BM_ReadInheritedDepth5);

// The same reads through the cloning reader that other threads use.
void BM_StringLocal(benchmark::State& state) {
    Chain& c = Shared();
    for (auto _ : state)
        benchmark::DoNotOptimize(c.local->GetString(c.color));
}
BENCHMARK(BM_StringLocal);

void BM_StringInheritedDepth5(benchmark::State& state) {
    Chain& c = Shared();
    for (auto _ : state)
        benchmark::DoNotOptimize(c.inheriting->GetString(c.color));
}
BENCHMARK(BM_StringInheritedDepth5);

// 100,000 notes over 10 prototypes that each hold 5 values: the notes store
// none of the prototypes' values.
void BM_SharedPrototypesStoreNoCopies(benchmark::State& state) {
    for (auto _ : state) {
        Hypertext doc;
        NodeMaker make(&doc);
        std::vector<Node*> prototypes;
        for (int p = 0; p < 10; ++p) {
            Node* proto = make.MakeDontInitialize("Proto" + std::to_string(p), doc.Root(), nullptr, 0, 0);
            proto->SetBoolean("IsPrototype", true);
            proto->Set("Color", "#00ff00");
            proto->Set("MyString", "inherited text");
            proto->SetLong("MyNumber", 7 + p);
            proto->Set("MyDate", "2026-01-01");
            proto->SetBoolean("MyBoolean", true);
            prototypes.push_back(proto);
        }
        const Attribute* myString = doc.AttributeStorage()->GetAttribute("MyString");
        size_t localCopies = 0;
        Node* after = nullptr;
        for (int i = 0; i < 100000; ++i) {
            after = make.MakeDontInitialize("n" + std::to_string(i), doc.Root(), after, 0, 0);
            after->SetPrototype(prototypes[i % 10], false);
        }
        for (Node* n = doc.Root()->Son(); n; n = n->Brother())
            if (!n->GetBoolean("IsPrototype") && n->DoGetImmediate(myString))
                ++localCopies;
        state.counters["local_copies"] = static_cast<double>(localCopies);
    }
}
BENCHMARK(BM_SharedPrototypesStoreNoCopies)->Unit(benchmark::kMillisecond)->Iterations(1);

} // namespace

BENCHMARK_MAIN();

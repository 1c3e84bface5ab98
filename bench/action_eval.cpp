// Evaluating action code over the 100,000-note document of the read
// benchmark: a query of two comparisons over every note (as `rylvane find`
// and agents run it), a regular-expression test on every note's name, and
// one compiled action applied to every note. Each pass after the first must
// parse nothing: compiled code is kept with its value, and the benchmarks
// fail when the parse count grows across passes.
#include <benchmark/benchmark.h>

#include <memory>

#include "Action.h"
#include "ActionHooks.h"
#include "AgentActionExpressionParser.h"
#include "BenchDocument.h"
#include "MatchList.h"
#include "NodeFacade.h"
#include "NoteQuery.h"
#include "Value.h"

namespace {

struct Fixture {
    std::unique_ptr<Hypertext> doc;
    NodeVector notes;
};

Fixture& Shared() {
    static Fixture* fixture = [] {
        InstallActionHooks();
        auto* f = new Fixture;
        f->doc = bench_document::MakeDocument();
        AttributeInfo(f->doc.get()).CreateBasicAttribute("Count", "User", true, AttributeType::kNumber);
        HypertextFacade(f->doc.get()).Apply([f](Node* note) {
            if (note != f->doc->Root())
                f->notes.push_back(note);
        });
        // Every tenth note is wide, so that the query finds some.
        for (size_t i = 0; i < f->notes.size(); i += 10)
            f->notes[i]->SetDouble("Width", 4);
        return f;
    }();
    return *fixture;
}

// Runs `pass` once to warm up, then times passes and fails the benchmark
// when any timed pass parsed action code.
template <typename Pass>
void TimedPasses(benchmark::State& state, Pass pass) {
    pass();
    long parsedBefore = AgentActionExpressionParser::ParseCount();
    for (auto _ : state)
        pass();
    long parsed = AgentActionExpressionParser::ParseCount() - parsedBefore;
    state.counters["parses_after_first_pass"] = static_cast<double>(parsed);
    if (parsed != 0)
        state.SkipWithError("compiled action code was parsed again");
}

void BM_FindColorAndWidth(benchmark::State& state) {
    Fixture& f = Shared();
    NoteQuery query("$Color==\"red\" & $Width>2", true);
    size_t found = 0;
    TimedPasses(state, [&] { found = query.FindAll(f.doc.get()).size(); });
    state.counters["found"] = static_cast<double>(found);
}
BENCHMARK(BM_FindColorAndWidth)->Unit(benchmark::kMillisecond);

void BM_NameContains(benchmark::State& state) {
    Fixture& f = Shared();
    NoteQuery query("$Name.contains(\"ab\")", true);
    size_t found = 0;
    TimedPasses(state, [&] { found = query.FindAll(f.doc.get()).size(); });
    state.counters["found"] = static_cast<double>(found);
}
BENCHMARK(BM_NameContains)->Unit(benchmark::kMillisecond);

// The action as code in an attribute: compiled once by its value, applied
// to every note.
void BM_ApplyCompiledIncrement(benchmark::State& state) {
    Fixture& f = Shared();
    f.doc->Root()->Set("Rule", "$Count=$Count+1");
    const Value* code = f.doc->Root()->Get(std::string("Rule"));
    Action* action = code ? code->AsAgentAction(f.doc.get()) : nullptr;
    if (!action) {
        state.SkipWithError("the action did not compile");
        return;
    }
    TimedPasses(state, [&] {
        MatchList matches;
        for (Node* note : f.notes) {
            matches.CurrentThat(note);
            action->Apply(note, matches);
        }
    });
    state.counters["count_on_first_note"] = f.notes.front()->GetDouble("Count");
}
BENCHMARK(BM_ApplyCompiledIncrement)->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();

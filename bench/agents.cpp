// Agents and rules over a document of 100,000 notes (1,000 boxes of 99
// notes, each with a number and a status) with 100 agents of simple
// queries: an attribute comparison, a regular expression on $Name and a
// descendedFrom, a third each.
//
// BM_AgentPass is one agent's scan once its results have settled (the part
// that runs on the agent queue; forced, as a settled agent over an unchanged
// document skips its scan), BM_AgentPassCaseless that of a case-insensitive
// regular expression; BM_AgentPassSkipped the pass of a settled agent that
// skips its scan; BM_UpdateAll100Agents runs all 100 agents
// on a fresh document, making every alias. BM_RuleTick is one tick of 25
// rules; BM_RuleScan a full scan with a one-statement rule in every note.
#include <benchmark/benchmark.h>

#include <memory>
#include <string>

#include "Agent.h"
#include "AgentHooks.h"
#include "AgentManager.h"
#include "AttributeInfo.h"
#include "AttributeType.h"
#include "Hypertext.h"
#include "Node.h"
#include "NodeFacade.h"
#include "NodeHelpers.h"
#include "RuleManager.h"

namespace {

constexpr int kNotes = 100000;
constexpr int kAgents = 100;

std::unique_ptr<Hypertext> MakeDocument(bool rules, int notes = kNotes) {
    InstallAgentHooks();
    auto doc = std::make_unique<Hypertext>();
    AttributeInfo info(doc.get());
    info.CreateBasicAttribute("Priority", "User", true, AttributeType::kNumber);
    info.CreateBasicAttribute("Status", "User", true, AttributeType::kString);
    NodeMaker maker(doc.get());
    static const char* const statuses[] = {"open", "done", "waiting", "someday"};
    Node* box = nullptr;
    Node* last = nullptr;
    Node* lastBox = nullptr;
    for (int i = 0; i < notes; ++i) {
        Node* note;
        if (i % 100 == 0) {
            note = maker.MakeDontInitialize("box" + std::to_string(i / 100), nullptr, lastBox, 0, 0);
            box = lastBox = note;
            last = nullptr;
        } else {
            note = maker.MakeDontInitialize("note " + std::to_string(i), box, last, 0, 0);
            last = note;
        }
        note->SetLong("Priority", i % 1000);
        note->Set("Status", statuses[i % 4]);
        if (rules)
            note->Set("Rule", "$Status = \"open\"");
    }
    doc->UpdateOutlineOrder();
    return doc;
}

std::string QueryFor(int k) {
    switch (k % 3) {
    case 0:
        return "$Priority > " + std::to_string(990 + k % 10);
    case 1:
        return "$Name.contains(\"note 1" + std::to_string(k % 10) + "[0-9]7$\")";
    default:
        return "descendedFrom(/box" + std::to_string(k) + ")";
    }
}

std::vector<Node*> AddAgents(Hypertext* doc) {
    std::vector<Node*> agents;
    Node* after = doc->Root()->YoungestSon();
    for (int k = 0; k < kAgents; ++k) {
        after = Agent::Create(doc, "agent " + std::to_string(k), nullptr, after, QueryFor(k));
        agents.push_back(after);
    }
    return agents;
}

void BM_AgentPass(benchmark::State& state) {
    auto doc = MakeDocument(false);
    std::vector<Node*> agents = AddAgents(doc.get());
    AgentManager* manager = AgentManager::For(doc.get());
    manager->UpdateAll();
    Agent* agent = manager->AgentFor(agents[state.range(0)]);
    for (auto _ : state)
        benchmark::DoNotOptimize(agent->Do(true));
    state.counters["results"] = double(agent->ResultCount());
}
BENCHMARK(BM_AgentPass)->Arg(0)->Arg(1)->Arg(2)->Unit(benchmark::kMillisecond);

void BM_AgentPassSkipped(benchmark::State& state) {
    auto doc = MakeDocument(false);
    std::vector<Node*> agents = AddAgents(doc.get());
    AgentManager* manager = AgentManager::For(doc.get());
    manager->UpdateAll();
    manager->UpdateAll();
    Agent* agent = manager->AgentFor(agents[0]);
    for (auto _ : state)
        benchmark::DoNotOptimize(agent->Do(false));
    if (!agent->LastPassSkipped())
        state.SkipWithError("the settled agent did not skip its pass");
}
BENCHMARK(BM_AgentPassSkipped)->Unit(benchmark::kMicrosecond);

// The regular-expression pass again with a case-insensitive pattern, which
// every note's name goes through the match engine for.
void BM_AgentPassCaseless(benchmark::State& state) {
    auto doc = MakeDocument(false);
    Node* node = Agent::Create(doc.get(), "caseless", nullptr, doc->Root()->YoungestSon(),
                               "$Name.icontains(\"NOTE 1[0-9]7$\")");
    AgentManager* manager = AgentManager::For(doc.get());
    manager->UpdateAll();
    Agent* agent = manager->AgentFor(node);
    for (auto _ : state)
        benchmark::DoNotOptimize(agent->Do(true));
    state.counters["results"] = double(agent->ResultCount());
}
BENCHMARK(BM_AgentPassCaseless)->Unit(benchmark::kMillisecond);

void BM_UpdateAll100Agents(benchmark::State& state) {
    long aliases = 0;
    for (auto _ : state) {
        state.PauseTiming();
        auto doc = MakeDocument(false, int(state.range(0)));
        AddAgents(doc.get());
        AgentManager* manager = AgentManager::For(doc.get());
        manager->Agents();
        state.ResumeTiming();
        manager->UpdateAll();
        state.PauseTiming();
        aliases = 0;
        for (Agent* agent : manager->Agents())
            aliases += long(agent->ResultCount());
        doc.reset();
        state.ResumeTiming();
    }
    state.counters["aliases"] = double(aliases);
}
BENCHMARK(BM_UpdateAll100Agents)->Arg(kNotes)->Arg(10 * kNotes)->Iterations(1)->Unit(benchmark::kMillisecond);

void BM_RuleTick(benchmark::State& state) {
    auto doc = MakeDocument(true);
    RuleManager* rules = RuleManager::For(doc.get());
    for (auto _ : state)
        benchmark::DoNotOptimize(rules->Run(RuleManager::kRulesPerTick));
}
BENCHMARK(BM_RuleTick)->Unit(benchmark::kMicrosecond);

void BM_RuleScan(benchmark::State& state) {
    auto doc = MakeDocument(true, int(state.range(0)));
    RuleManager* rules = RuleManager::For(doc.get());
    long ran = 0;
    for (auto _ : state)
        ran = rules->RunAll();
    state.counters["rules"] = double(ran);
}
BENCHMARK(BM_RuleScan)->Arg(kNotes)->Arg(10 * kNotes)->Iterations(2)->Unit(benchmark::kMillisecond);

} // namespace

BENCHMARK_MAIN();

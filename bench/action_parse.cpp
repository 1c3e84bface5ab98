// Parsing action code: 10,000 distinct actions of about 200 bytes each, as
// a document's rules, edicts and agent queries are compiled when it opens.
#include <benchmark/benchmark.h>

#include <cstdio>
#include <string>
#include <vector>

#include "Action.h"

namespace {

// Distinct texts of typical shape: assignments, conditions, group functions,
// dot operators, quoted strings and a comment.
std::vector<std::string> MakeActions(int count) {
    static const char* const shapes[] = {
        "$Score=$Score(parent)+%d*2; if($Status==\"open\" & $Priority>%d){$Color=\"red\";$Badge=\"flag\"}"
        "else{$Color=\"green\"}; $Tags=$Tags+\"t%d\"; // keep going\n $Count=collect(children,$Count).sum+1",
        "$Summary=$Text.paragraphs(%d).replace(\"\\n\", \" \").trim; var n = $Name.size + %d;"
        " $Due=date(2024, %d, 1) + \"1 week\"; $Checked |= inside(/Projects/Active) & $Done!=true;"
        " $Width=$Width*1.5",
        "if(descendedFrom(/Archive)){$Prototype=\"pArchived\"}; $Words=$Text.words(%d).lowercase; "
        "$List.each(x){$Total=$Total+$x.toNumber}; $Ratio=round(%d/3)*100; $Key=\"k%d\"; $Seen=true",
        "$Names=find($Tags.contains(\"urgent\") & $DueDate<date(today)+%d).sort; $N=count($Names);"
        " $First=$Names[0]; $Msg=\"first \"+$First+\" of \"+$N; $Seen&=%d>0; $Level=%d; $Mark=\"*\"",
    };
    std::vector<std::string> actions;
    actions.reserve(count);
    char buffer[512];
    for (int i = 0; i < count; ++i) {
        std::snprintf(buffer, sizeof buffer, shapes[i % 4], i, i % 97, i % 12 + 1);
        actions.emplace_back(buffer);
    }
    return actions;
}

void BM_ParseActions(benchmark::State& state) {
    const std::vector<std::string> actions = MakeActions(10000);
    size_t bytes = 0;
    for (const std::string& action : actions)
        bytes += action.size();
    for (auto _ : state) {
        for (const std::string& text : actions) {
            std::unique_ptr<Action> action = Action::Create(text);
            benchmark::DoNotOptimize(action.get());
        }
    }
    state.counters["actions"] = static_cast<double>(actions.size());
    state.counters["avg_bytes"] = static_cast<double>(bytes) / static_cast<double>(actions.size());
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * bytes));
}
BENCHMARK(BM_ParseActions)->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();

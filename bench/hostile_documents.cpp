// Documents shaped to make reading do more than linear work: a prototype
// chain of N notes, N aliases of one note, N attribute definitions, N values
// of unknown attributes on one note, N colours, and one attribute value of N
// megabytes. Each is read at several sizes; the complexity fit printed by
// the benchmark library should stay linear (N or N log N).
#include <benchmark/benchmark.h>

#include <memory>
#include <string>

#include "Hypertext.h"
#include "TalvikReader.h"

namespace {

const char* const kHead = "<?xml version=\"1.0\" encoding=\"UTF-8\" ?>\n<rylvane version=\"2\" revision=\"13\" >\n";
const char* const kTail = "</rylvane>\n";

std::string Note(long id, const std::string& name, const std::string& extra = {}, const std::string& attrs = {}) {
    return "<item ID=\"" + std::to_string(id) + "\" Creator=\"b\"" + attrs + " >\n<attribute name=\"Name\">" + name +
           "</attribute>\n" + extra;
}

std::string PrototypeChain(long n) {
    std::string xml = kHead + Note(1, "root");
    for (long i = 0; i < n; ++i)
        xml += Note(100 + i, "p" + std::to_string(i), "<attribute name=\"IsPrototype\">true</attribute>\n",
                    i ? " proto=\"p" + std::to_string(i - 1) + "\"" : std::string()) +
               "</item>\n";
    return xml + "</item>\n" + kTail;
}

std::string Aliases(long n) {
    std::string xml = kHead + Note(1, "root") + Note(2, "original") + "</item>\n";
    for (long i = 0; i < n; ++i)
        xml += Note(100 + i, "original", "<attribute name=\"Alias\">2</attribute>\n") + "</item>\n";
    return xml + "</item>\n" + kTail;
}

std::string AttributeDefinitions(long n) {
    std::string xml = kHead;
    for (long i = 0; i < n; ++i)
        xml += "<attrib Name=\"a" + std::to_string(i) +
               "\" editable=\"1\" visibleInEditor=\"1\" default=\"\" >\n</attrib>\n";
    return xml + Note(1, "root") + "</item>\n" + kTail;
}

std::string UnknownValues(long n) {
    std::string values;
    for (long i = 0; i < n; ++i)
        values += "<attribute name=\"u" + std::to_string(i) + "\">x</attribute>\n";
    return kHead + Note(1, "root") + Note(2, "note", values) + "</item>\n</item>\n" + kTail;
}

std::string ManyColors(long n) {
    std::string xml = std::string(kHead) + "<colors >\n";
    for (long i = 0; i < n; ++i)
        xml += "<color name=\"c" + std::to_string(i) + "\" hidden=\"0\" >#123456</color>\n";
    return xml + "</colors>\n" + Note(1, "root") + "</item>\n" + kTail;
}

// The value stands in an XML attribute (an attribute's default): expat
// holds such a token whole, and pieces that end inside it make it scan the
// token again from its start.
std::string LargeValue(long megabytes) {
    std::string value(static_cast<size_t>(megabytes) << 20, 'v');
    return kHead + std::string("<attrib Name=\"Big\" editable=\"1\" visibleInEditor=\"1\" default=\"") + value +
           "\" >\n</attrib>\n" + Note(1, "root") + "</item>\n" + kTail;
}

void ReadEach(benchmark::State& state, std::string (*make)(long)) {
    const std::string xml = make(state.range(0));
    for (auto _ : state) {
        auto doc = std::make_unique<Hypertext>();
        TalvikReader reader(doc->Root());
        if (!reader.Read(xml)) {
            state.SkipWithError(reader.ErrorMessage().c_str());
            break;
        }
        benchmark::DoNotOptimize(doc.get());
    }
    state.SetComplexityN(state.range(0));
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * xml.size()));
}

void BM_ReadPrototypeChain(benchmark::State& state) { ReadEach(state, PrototypeChain); }
BENCHMARK(BM_ReadPrototypeChain)->Arg(8000)->Arg(16000)->Arg(32000)->Arg(100000)->Unit(benchmark::kMillisecond)
    ->Complexity();

void BM_ReadAliasesOfOneNote(benchmark::State& state) { ReadEach(state, Aliases); }
BENCHMARK(BM_ReadAliasesOfOneNote)->Arg(10000)->Arg(20000)->Arg(40000)->Unit(benchmark::kMillisecond)->Complexity();

void BM_ReadAttributeDefinitions(benchmark::State& state) { ReadEach(state, AttributeDefinitions); }
BENCHMARK(BM_ReadAttributeDefinitions)->Arg(20000)->Arg(40000)->Arg(80000)->Unit(benchmark::kMillisecond)
    ->Complexity();

void BM_ReadUnknownValuesOnOneNote(benchmark::State& state) { ReadEach(state, UnknownValues); }
BENCHMARK(BM_ReadUnknownValuesOnOneNote)->Arg(20000)->Arg(40000)->Arg(80000)->Unit(benchmark::kMillisecond)
    ->Complexity();

void BM_ReadColors(benchmark::State& state) { ReadEach(state, ManyColors); }
BENCHMARK(BM_ReadColors)->Arg(20000)->Arg(40000)->Arg(80000)->Unit(benchmark::kMillisecond)->Complexity();

// The argument is the value's size in megabytes.
void BM_ReadOneLargeValue(benchmark::State& state) { ReadEach(state, LargeValue); }
BENCHMARK(BM_ReadOneLargeValue)->Arg(25)->Arg(50)->Arg(100)->Unit(benchmark::kMillisecond)->Complexity();

} // namespace

BENCHMARK_MAIN();

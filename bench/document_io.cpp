// Reading and writing a large document: 100,000 notes of 10 attributes
// (name, position, creation and modification times, colour, and four user
// attributes) and 60 words of text each, with 20,000 links: about 90 MB of
// XML.
//
// BM_ExpatOnly parses the same bytes with expat and empty handlers: the
// floor that reading and writing are measured against. A read parses on a
// second thread while the calling one builds the notes, so BM_Read is timed
// by the clock, and its CPU time is that of the whole process (both
// threads). BM_ReadPeakMemory
// reads the file from disk in a child process and reports the peak resident
// memory the read added, against the file's size.
#include <benchmark/benchmark.h>

#include <cstdio>
#include <fstream>
#include <memory>
#include <random>
#include <sstream>
#include <string>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <expat.h>

#include "AttributeInfo.h"
#include "Attribute.h"
#include "Hypertext.h"
#include "LinkType.h"
#include "Node.h"
#include "NodeHelpers.h"
#include "NodeLinks.h"
#include "TalvikReader.h"
#include "STime.h"
#include "TalvikWriter.h"

#include "BenchDocument.h"

namespace {

using namespace bench_document;

struct Fixture {
    std::unique_ptr<Hypertext> doc;
    std::string bytes;
    std::string path;
};

// The generated file on disk, once made.
std::string writtenFile;

Fixture& Shared() {
    static Fixture* fixture = [] {
        auto* f = new Fixture;
        f->doc = MakeDocument();
        std::ostringstream out;
        TalvikWriter(f->doc.get()).Write(out);
        f->bytes = out.str();
        f->path = "/tmp/rylvane-bench-document-" + std::to_string(::getpid()) + ".ryl";
        std::ofstream(f->path, std::ios::binary) << f->bytes;
        writtenFile = f->path;
        return f;
    }();
    return *fixture;
}

void XMLCALL NoStart(void*, const XML_Char*, const XML_Char**) {}
void XMLCALL NoEnd(void*, const XML_Char*) {}
void XMLCALL NoText(void*, const XML_Char*, int) {}

void BM_ExpatOnly(benchmark::State& state) {
    const std::string& bytes = Shared().bytes;
    for (auto _ : state) {
        XML_Parser parser = XML_ParserCreate("UTF-8");
        XML_SetElementHandler(parser, NoStart, NoEnd);
        XML_SetCharacterDataHandler(parser, NoText);
        bool ok = XML_Parse(parser, bytes.data(), static_cast<int>(bytes.size()), XML_TRUE) == XML_STATUS_OK;
        XML_ParserFree(parser);
        if (!ok)
            state.SkipWithError("expat refused the document");
    }
    state.counters["MB"] = static_cast<double>(bytes.size()) / 1e6;
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * bytes.size()));
}
BENCHMARK(BM_ExpatOnly)->Unit(benchmark::kMillisecond)->MinTime(3)->UseRealTime();

void BM_Read(benchmark::State& state) {
    const std::string& bytes = Shared().bytes;
    long notes = 0;
    for (auto _ : state) {
        auto doc = std::make_unique<Hypertext>();
        {
            // The reader puts the document's settings back when it ends, so
            // it must end before the document does.
            TalvikReader reader(doc->Root());
            if (!reader.Read(bytes))
                state.SkipWithError(reader.ErrorMessage().c_str());
            notes = reader.NoteCount();
        }
        state.PauseTiming();
        doc.reset();
        state.ResumeTiming();
    }
    state.counters["notes"] = static_cast<double>(notes);
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * bytes.size()));
}
BENCHMARK(BM_Read)->Unit(benchmark::kMillisecond)->MinTime(3)->UseRealTime()->MeasureProcessCPUTime();

void BM_Write(benchmark::State& state) {
    Fixture& f = Shared();
    size_t size = 0;
    for (auto _ : state) {
        std::ostringstream out;
        TalvikWriter(f.doc.get()).Write(out);
        size = static_cast<size_t>(out.tellp());
        benchmark::DoNotOptimize(size);
    }
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * size));
}
BENCHMARK(BM_Write)->Unit(benchmark::kMillisecond)->MinTime(3);

long ResidentKB(const char* field) {
    std::ifstream status("/proc/self/status");
    std::string line;
    while (std::getline(status, line))
        if (line.rfind(field, 0) == 0)
            return std::stol(line.substr(std::string(field).size()));
    return 0;
}

// Reads the file in a fresh process (this program run again with
// --measure-read) and reports the resident memory the read added: at its
// peak, and once the document is read, against the file's size.
void BM_ReadPeakMemory(benchmark::State& state) {
    Fixture& f = Shared();
    double peakMB = 0, afterMB = 0;
    for (auto _ : state) {
        std::string command = "/proc/" + std::to_string(::getpid()) + "/exe --measure-read '" + f.path + "'";
        FILE* pipe = ::popen(command.c_str(), "r");
        if (!pipe) {
            state.SkipWithError("no pipe");
            return;
        }
        char line[128] = {};
        bool got = std::fgets(line, sizeof line, pipe) != nullptr;
        ::pclose(pipe);
        int ok = 0;
        long before = 0, peak = 0, after = 0;
        if (!got || std::sscanf(line, "%d %ld %ld %ld", &ok, &before, &peak, &after) != 4 || !ok) {
            state.SkipWithError("the read failed");
            return;
        }
        peakMB = static_cast<double>(peak - before) / 1024.0;
        afterMB = static_cast<double>(after - before) / 1024.0;
    }
    double fileMB = static_cast<double>(f.bytes.size()) / (1024.0 * 1024.0);
    state.counters["peak_added_MB"] = peakMB;
    state.counters["after_read_MB"] = afterMB;
    state.counters["file_MB"] = fileMB;
    state.counters["ratio_peak_to_file"] = peakMB / fileMB;
    state.counters["ratio_after_to_file"] = afterMB / fileMB;
}
BENCHMARK(BM_ReadPeakMemory)->Unit(benchmark::kMillisecond)->Iterations(1);

}  // namespace

// The measuring child: reads the file and prints "ok before peak after" in KiB.
int MeasureRead(const char* path) {
    long before = ResidentKB("VmRSS:");
    auto doc = std::make_unique<Hypertext>();
    bool ok = false;
    {
        TalvikReader reader(doc->Root());
        ok = reader.ReadFile(path);
    }
    long peak = ResidentKB("VmHWM:");
    long after = ResidentKB("VmRSS:");
    std::printf("%d %ld %ld %ld\n", ok ? 1 : 0, before, peak, after);
    return ok ? 0 : 1;
}

int main(int argc, char** argv) {
    if (argc == 3 && std::string(argv[1]) == "--measure-read")
        return MeasureRead(argv[2]);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    // The generated file is large; leave nothing behind in the temporary folder.
    if (!writtenFile.empty())
        std::remove(writtenFile.c_str());
    return 0;
}

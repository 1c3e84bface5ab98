// Export of the read benchmark's kind of document: templating alone (a
// typical page template over 10,000 notes, in memory), and the whole export
// to a folder of files, first into an empty folder and then again over the
// unchanged document, which must write no file.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <memory>
#include <vector>
#include <fcntl.h>
#include <sys/vfs.h>
#include <unistd.h>

#include "ActionHooks.h"
#include "BenchDocument.h"
#include "ExportFileManager.h"
#include "ExportHooks.h"
#include "ExportTemplate.h"
#include "Exporter.h"
#include "HTMLExporter.h"
#include "NodeFacade.h"

namespace {

constexpr int kPages = 10000;

// Title, text, child list, links and two values: what a page of a site holds.
const char* const kPageTemplate =
    "<!DOCTYPE html><html><head><title>^title^</title></head><body>\n"
    "<h1>^title^</h1>\n<p>^value($Status)^ / ^value($Priority*2)^</p>\n^text^\n"
    "^childlinks(\"<ul>\",\"<li>\",\"</li>\",\"</ul>\")^\n"
    "^outboundlinks(\"<ul>\",\"<li>\",\"</li>\",\"</ul>\")^\n</body></html>\n";

struct Fixture {
    std::unique_ptr<Hypertext> doc;
    NodeVector notes;
};

// The first 10,000 notes of the benchmark document (100 containers of 99).
Fixture& Shared() {
    static Fixture* fixture = [] {
        InstallActionHooks();
        InstallExportHooks();
        auto* f = new Fixture;
        f->doc = bench_document::MakeDocument();
        NodeVector all;
        HypertextFacade(f->doc.get()).Apply([&](Node* note) {
            if (note != f->doc->Root())
                all.push_back(note);
        });
        // Only the first 100 containers make pages in the export runs.
        for (size_t i = 0; i < all.size(); ++i) {
            if (i < static_cast<size_t>(kPages))
                f->notes.push_back(all[i]);
            else if (all[i]->Father() == f->doc->Root())
                all[i]->SetBoolean("HTMLDontExport", true), all[i]->SetBoolean("HTMLExportChildren", false);
        }
        return f;
    }();
    return *fixture;
}

void BM_ExpandPageTemplate(benchmark::State& state) {
    Fixture& f = Shared();
    DummyHTMLExporter exporter(f.doc.get());
    ExportTemplate page(kPageTemplate, &exporter, nullptr);
    size_t bytes = 0;
    for (auto _ : state) {
        for (Node* note : f.notes)
            bytes += page.ExportString(note, note).size();
    }
    state.counters["pages"] = static_cast<double>(f.notes.size());
    benchmark::DoNotOptimize(bytes);
}
BENCHMARK(BM_ExpandPageTemplate)->Unit(benchmark::kMillisecond)->Iterations(3);

// In the temporary folder (TMPDIR), the label saying whether the pages went
// to memory or to a disk. On a disk, creating files costs what the file
// system makes it cost: a file system without a journal passes over every
// inode freed in the last minute or more before it hands out a new one, so a
// first export soon after many files were deleted (a build, or an earlier
// run of this program) takes many times longer. Each pass therefore writes
// into a folder of its own, and every folder is deleted once all the
// benchmarks have run.
std::vector<std::string>& Leftovers() {
    static std::vector<std::string> folders;
    return folders;
}

std::string Folder(int pass = 0) {
    std::string folder = (std::filesystem::temp_directory_path() /
                          ("rylvane-bench-export-" + std::to_string(::getpid()) + "-" + std::to_string(pass)))
                             .string();
    if (std::find(Leftovers().begin(), Leftovers().end(), folder) == Leftovers().end())
        Leftovers().push_back(folder);
    return folder;
}

const char* Medium() {
    constexpr long kTmpfsMagic = 0x01021994;
    struct statfs info;
    if (::statfs(std::filesystem::temp_directory_path().c_str(), &info) != 0)
        return "unknown";
    return static_cast<long>(info.f_type) == kTmpfsMagic ? "tmpfs" : "disk";
}

// Exports with the page template; answers the files written.
long ExportOnce(Fixture& f, const std::string& folder) {
    HTMLExporter exporter(f.doc.get(), folder);
    exporter.SetTemplateText(kPageTemplate);
    exporter.Export(true);
    return exporter.Written();
}

// What the file system alone charges for as many files as an export
// writes, made the same way (open, write, close) in the same place; answers
// the seconds taken, or a negative number when a file cannot be written.
double CreateFilesAlone(const std::string& folder) {
    const std::string page(1024, 'x');
    auto start = std::chrono::steady_clock::now();
    std::filesystem::create_directories(folder);
    for (int i = 0; i < kPages; ++i) {
        std::string path = folder + "/page" + std::to_string(i) + ".html";
        int fd = ::open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0666);
        bool whole = fd >= 0 && ::write(fd, page.data(), page.size()) == static_cast<ssize_t>(page.size());
        if (fd >= 0)
            ::close(fd);
        if (!whole)
            return -1;
    }
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

// Before each export, untimed, as many files are made by hand beside it: the
// counter "alone_s" is what the file system charged for those, under the
// same conditions, and what the export takes beyond it is the program's.
void BM_ExportToFolder(benchmark::State& state) {
    Fixture& f = Shared();
    int passes = 0;
    long written = 0;
    double alone = 0;
    for (auto _ : state) {
        state.PauseTiming();
        double taken = CreateFilesAlone(Folder(1000 + passes + 1));
        if (taken < 0) {
            state.SkipWithError("cannot write a file in the temporary folder");
            break;
        }
        alone += taken;
        // A first export: nothing kept from an export before.
        f.doc->CountChange();
        state.ResumeTiming();
        written = ExportOnce(f, Folder(++passes));
    }
    state.counters["files_written"] = static_cast<double>(written);
    state.counters["alone_s"] = passes ? alone / passes : 0.0;
    state.SetLabel(Medium());
    if (written < kPages)
        state.SkipWithError("fewer pages written than notes exported");
}
BENCHMARK(BM_ExportToFolder)->Unit(benchmark::kMillisecond)->Iterations(3);

// The names of the 10,000 pages of an export of the 100,000-note document,
// as the export asks for them, after an edit (so that no names are kept
// from the last export).
void BM_NameFiles(benchmark::State& state) {
    Fixture& f = Shared();
    for (auto _ : state) {
        f.doc->CountChange();
        ExportFileManager names(f.doc.get());
        names.Initialize();
        for (Node* note : f.notes)
            benchmark::DoNotOptimize(names.LocalFileName(note));
    }
}
BENCHMARK(BM_NameFiles)->Unit(benchmark::kMillisecond);

void BM_ExportUnchanged(benchmark::State& state) {
    Fixture& f = Shared();
    std::string folder = Folder();
    ExportOnce(f, folder);
    long written = 0;
    for (auto _ : state)
        written += ExportOnce(f, folder);
    state.counters["files_written"] = static_cast<double>(written);
    state.SetLabel(Medium());
    if (written != 0)
        state.SkipWithError("an export of the unchanged document wrote files");
}
BENCHMARK(BM_ExportUnchanged)->Unit(benchmark::kMillisecond)->Iterations(3);

}  // namespace

int main(int argc, char** argv) {
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 1;
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    for (const std::string& folder : Leftovers()) {
        std::error_code ignored;
        std::filesystem::remove_all(folder, ignored);
    }
    return 0;
}

// Runs a fuzz target's entry point once on each file named on the command
// line, or on each file below a named directory, in name order. Used to keep
// every seed and every input that once failed as a regression test in builds
// without libFuzzer. A failing input aborts the program; its name is printed
// first so that the log shows which one it was.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>
#include <string>
#include <system_error>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size);
extern "C" __attribute__((weak)) int LLVMFuzzerInitialize(int* argc, char*** argv);

namespace {

void Collect(const std::filesystem::path& path, std::vector<std::filesystem::path>& files) {
    std::error_code error;
    if (std::filesystem::is_directory(path, error)) {
        for (auto it = std::filesystem::recursive_directory_iterator(path, error);
             !error && it != std::filesystem::recursive_directory_iterator(); it.increment(error))
            if (it->is_regular_file(error))
                files.push_back(it->path());
    } else {
        files.push_back(path);
    }
}

} // namespace

int main(int argc, char** argv) {
    if (LLVMFuzzerInitialize)
        LLVMFuzzerInitialize(&argc, &argv);
    std::vector<std::filesystem::path> files;
    for (int i = 1; i < argc; ++i)
        Collect(argv[i], files);
    std::sort(files.begin(), files.end());
    if (files.empty()) {
        std::fprintf(stderr, "no inputs found\n");
        return 1;
    }
    for (const auto& file : files) {
        std::ifstream in(file, std::ios::binary);
        if (!in) {
            std::fprintf(stderr, "cannot read %s\n", file.c_str());
            return 1;
        }
        std::string bytes((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
        std::fprintf(stderr, "running %s (%zu bytes)\n", file.c_str(), bytes.size());
        // Like libFuzzer, pass a heap block of exactly the input's size so
        // that AddressSanitizer sees any read past its end.
        std::unique_ptr<uint8_t[]> exact(new uint8_t[bytes.size()]);
        std::copy(bytes.begin(), bytes.end(), exact.get());
        LLVMFuzzerTestOneInput(exact.get(), bytes.size());
    }
    std::printf("%zu inputs ran\n", files.size());
    return 0;
}

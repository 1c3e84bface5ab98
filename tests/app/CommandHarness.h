#pragma once
// Runs the `rylvane` program on document files in a folder of its own and
// checks what it prints, what it leaves on disk and how it fails.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <sys/wait.h>
#include <unistd.h>

namespace cmdtest {

struct RunResult {
    int code = -1;
    std::string out;
    std::string err;
};

inline std::string Quote(const std::string& s) {
    std::string q = "'";
    for (char c : s)
        q += c == '\'' ? std::string("'\\''") : std::string(1, c);
    return q + "'";
}

inline std::string Slurp(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    std::ostringstream s;
    s << in.rdbuf();
    return s.str();
}

class Commands : public ::testing::Test {
protected:
    void SetUp() override {
        dir = std::filesystem::temp_directory_path() /
              ("rylvane-cli-" + std::to_string(::getpid()) + "-" +
               ::testing::UnitTest::GetInstance()->current_test_info()->name());
        std::filesystem::remove_all(dir);
        std::filesystem::create_directories(dir);
        file = (dir / "notes.ryl").string();
    }
    void TearDown() override { std::filesystem::remove_all(dir); }

    RunResult R(const std::vector<std::string>& args) {
        std::string command = Quote(std::string(RYL_BINARY_DIR) + "/app/rylvane");
        for (const auto& a : args)
            command += " " + Quote(a);
        std::string errFile = (dir / "stderr").string();
        command += " 2>" + Quote(errFile);
        RunResult run;
        FILE* pipe = ::popen(command.c_str(), "r");
        std::array<char, 4096> buffer;
        size_t n;
        while ((n = fread(buffer.data(), 1, buffer.size(), pipe)) > 0)
            run.out.append(buffer.data(), n);
        int status = ::pclose(pipe);
        run.code = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
        run.err = Slurp(errFile);
        return run;
    }

    // A failure is exit code 1 and one line on stderr naming the file.
    void ExpectFailure(const RunResult& run, const std::string& part) {
        EXPECT_EQ(run.code, 1);
        EXPECT_EQ(run.out, "");
        EXPECT_EQ(std::count(run.err.begin(), run.err.end(), '\n'), 1) << run.err;
        EXPECT_NE(run.err.find(part), std::string::npos) << run.err;
    }

    std::filesystem::path dir;
    std::string file;
};

} // namespace cmdtest

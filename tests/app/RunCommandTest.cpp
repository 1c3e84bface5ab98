// `rylvane update`, `rylvane agents` and `rylvane run`: what they print,
// what they leave on disk, and the file after kills at random moments.
#include <gtest/gtest.h>

#include <chrono>
#include <csignal>
#include <fcntl.h>
#include <random>
#include <spawn.h>
#include <sys/wait.h>
#include <thread>

#include "CommandHarness.h"

extern char** environ;

namespace {

using cmdtest::Commands;
using cmdtest::Slurp;

class RunCommands : public Commands {
protected:
    // A document with fruit, an agent for pies and a counting rule.
    void MakeDocument() {
        ASSERT_EQ(R({"new", file}).code, 0);
        for (const char* name : {"apple pie", "banana", "cherry pie"})
            ASSERT_EQ(R({"add", file, "/", name}).code, 0);
        ASSERT_EQ(R({"add", file, "/", "Pies"}).code, 0);
        ASSERT_EQ(R({"set", file, "/Pies", "AgentQuery", "$Name.contains(\"pie\")"}).code, 0);
        ASSERT_EQ(R({"add", file, "/", "Counter"}).code, 0);
        ASSERT_EQ(R({"set", file, "/Counter", "Rule", "$Width = $Width + 1"}).code, 0);
    }

    pid_t Start(const std::vector<std::string>& args) {
        std::vector<std::string> all{std::string(RYL_BINARY_DIR) + "/app/rylvane"};
        all.insert(all.end(), args.begin(), args.end());
        std::vector<char*> argv;
        for (auto& a : all)
            argv.push_back(a.data());
        argv.push_back(nullptr);
        posix_spawn_file_actions_t actions;
        posix_spawn_file_actions_init(&actions);
        std::string out = (dir / "run-out").string(), err = (dir / "run-err").string();
        posix_spawn_file_actions_addopen(&actions, 1, out.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0644);
        posix_spawn_file_actions_addopen(&actions, 2, err.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0644);
        pid_t pid = -1;
        if (posix_spawn(&pid, argv[0], &actions, nullptr, argv.data(), environ) != 0)
            pid = -1;
        posix_spawn_file_actions_destroy(&actions);
        return pid;
    }
};

TEST_F(RunCommands, UpdateFillsAgentsRunsRulesAndLeavesASettledFileAlone) {
    MakeDocument();
    auto listed = R({"agents", file});
    EXPECT_EQ(listed.out, "/Pies\t$Name.contains(\"pie\")\t1\t0\n");
    auto updated = R({"update", file});
    EXPECT_EQ(updated.code, 0);
    EXPECT_EQ(updated.out, "/Pies\t2\n");
    EXPECT_EQ(R({"agents", file}).out, "/Pies\t$Name.contains(\"pie\")\t1\t2\n");
    EXPECT_EQ(R({"get", file, "/Counter", "Width"}).out, "4\n");
    EXPECT_NE(R({"tree", file}).out.find("apple pie (alias)"), std::string::npos);

    // With a rule that settles, a second update leaves the file as it was.
    ASSERT_EQ(R({"set", file, "/Counter", "Rule", "$Width = 7"}).code, 0);
    ASSERT_EQ(R({"update", file}).code, 0);
    std::string settled = Slurp(file);
    auto again = R({"update", file});
    EXPECT_EQ(again.out, "/Pies\t2\n");
    EXPECT_EQ(Slurp(file), settled);

    ExpectFailure(R({"update", (dir / "missing.ryl").string()}), "missing.ryl");
    ExpectFailure(R({"agents", (dir / "missing.ryl").string()}), "missing.ryl");
}

TEST_F(RunCommands, RunOnTheSimulatedClockTicksRulesAndStopsWhenQuiet) {
    MakeDocument();
    auto run = R({"run", file, "--for", "1h", "--fast"});
    EXPECT_EQ(run.code, 0);
    EXPECT_EQ(run.err, "");
    // 3600 rule ticks of 25 rules each (the one rule, over and over).
    EXPECT_EQ(R({"get", file, "/Counter", "Width"}).out, std::to_string(3 + 3600 * 25) + "\n");
    EXPECT_EQ(R({"agents", file}).out, "/Pies\t$Name.contains(\"pie\")\t1\t2\n");

    ASSERT_EQ(R({"set", file, "/Counter", "Rule", "$Width = 7"}).code, 0);
    auto quiet = R({"run", file, "--until-quiet", "--fast"});
    EXPECT_EQ(quiet.code, 0);
    EXPECT_EQ(R({"get", file, "/Counter", "Width"}).out, "7\n");

    ExpectFailure(R({"run", file, "--for", "soon"}), "--for");
    ExpectFailure(R({"run", file, "--save-every", "0"}), "--save-every");
}

TEST_F(RunCommands, KilledRunsLeaveAWholeDocument) {
    ASSERT_EQ(R({"new", file}).code, 0);
    ASSERT_EQ(R({"add", file, "/", "Counter"}).code, 0);
    // Enough notes that a save takes a while, each with a rule.
    for (int i = 0; i < 3; ++i) {
        ASSERT_EQ(R({"add", file, "/", "box " + std::to_string(i)}).code, 0);
    }
    ASSERT_EQ(R({"set", file, "/Counter", "Rule", "$Width = $Width + 1; $Text = $Text + \"more words \""}).code, 0);
    std::mt19937 random(17);
    std::uniform_int_distribution<int> moment(20, 400);
    int terms = 0;
    for (int trial = 0; trial < 50; ++trial) {
        SCOPED_TRACE("trial " + std::to_string(trial));
        const std::string before = Slurp(file);
        pid_t pid = Start({"run", file, "--save-every", "0.02"});
        ASSERT_GT(pid, 0);
        std::this_thread::sleep_for(std::chrono::milliseconds(moment(random)));
        bool term = trial % 3 == 0;
        ::kill(pid, term ? SIGTERM : SIGKILL);
        int status = 0;
        ::waitpid(pid, &status, 0);
        if (term) {
            // A stop ends the run with its save. On a busy machine the signal
            // may come before the program has started at all; it then ends
            // as any program does, and the file must be as it was.
            if (WIFSIGNALED(status) && WTERMSIG(status) == SIGTERM)
                EXPECT_EQ(Slurp(file), before);
            else
                EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0) << Slurp((dir / "run-err").string());
            ++terms;
        }
        if (Slurp(file) == before)
            continue;
        auto read = R({"get", file, "/box 2", "Name"});
        ASSERT_EQ(read.code, 0) << "the file does not read after a kill: " << read.err;
        EXPECT_EQ(read.out, "box 2\n");
    }
    EXPECT_GT(terms, 0);
}

} // namespace

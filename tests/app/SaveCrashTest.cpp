// Kills `rylvane set` at random moments while it reads, changes and saves a
// large document, and checks after each kill that the file on disk is either
// the old document byte for byte or the new one, complete and readable.
#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <csignal>
#include <fcntl.h>
#include <iostream>
#include <filesystem>
#include <fstream>
#include <random>
#include <spawn.h>
#include <sstream>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

#include "AttributeInfo.h"
#include "AttributeType.h"
#include "Hypertext.h"
#include "Node.h"
#include "NodeHelpers.h"
#include "TalvikWriter.h"

extern char** environ;

namespace {

constexpr int kTrials = 50;
constexpr int kNotes = 8000;

std::string Slurp(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    std::ostringstream s;
    s << in.rdbuf();
    return s.str();
}

// A document of a few megabytes, so that writing it takes long enough for
// kills to land in the middle of the write.
std::string LargeDocument() {
    Hypertext doc;
    AttributeInfo(&doc).CreateBasicAttribute("Mark", "User", true, AttributeType::kString);
    NodeMaker maker(&doc);
    Node* container = nullptr;
    Node* last = nullptr;
    for (int i = 0; i < kNotes; ++i) {
        bool top = i % 100 == 0;
        Node* note = maker.MakeDontInitialize("note " + std::to_string(i), top ? nullptr : container,
                                              top ? container : last, i % 17, i % 23);
        if (top)
            container = note;
        last = top ? nullptr : note;
        note->Set("Mark", "start");
        note->Set("Color", i % 2 ? "red" : "#336699");
        NodeText(note).SetText("Some words of text for note " + std::to_string(i) +
                               ", long enough to give the file some weight on disk.");
    }
    doc.UpdateOutlineOrder();
    std::ostringstream out;
    TalvikWriter(&doc).Write(out);
    return out.str();
}

class Runner {
public:
    explicit Runner(std::filesystem::path d) : dir(std::move(d)) {}

    // Starts the program with its output sent to files in the directory.
    pid_t Start(const std::vector<std::string>& args) {
        std::vector<std::string> all{std::string(RYL_BINARY_DIR) + "/app/rylvane"};
        all.insert(all.end(), args.begin(), args.end());
        std::vector<char*> argv;
        for (auto& a : all)
            argv.push_back(a.data());
        argv.push_back(nullptr);
        posix_spawn_file_actions_t actions;
        posix_spawn_file_actions_init(&actions);
        std::string out = (dir / "stdout").string(), err = (dir / "stderr").string();
        posix_spawn_file_actions_addopen(&actions, 1, out.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0644);
        posix_spawn_file_actions_addopen(&actions, 2, err.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0644);
        pid_t pid = -1;
        if (posix_spawn(&pid, argv[0], &actions, nullptr, argv.data(), environ) != 0)
            pid = -1;
        posix_spawn_file_actions_destroy(&actions);
        return pid;
    }

    // Runs to the end; answers the exit code and what went to stdout.
    int Run(const std::vector<std::string>& args, std::string* out = nullptr) {
        pid_t pid = Start(args);
        if (pid < 0)
            return -1;
        int status = 0;
        ::waitpid(pid, &status, 0);
        if (out)
            *out = Slurp((dir / "stdout").string());
        return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    }

private:
    std::filesystem::path dir;
};

} // namespace

TEST(SaveCrash, KilledSavesLeaveTheOldOrTheNewDocument) {
    auto dir = std::filesystem::temp_directory_path() / ("rylvane-crash-" + std::to_string(::getpid()));
    std::filesystem::remove_all(dir);
    std::filesystem::create_directories(dir);
    const std::string file = (dir / "large.ryl").string();
    std::ofstream(file, std::ios::binary) << LargeDocument();
    Runner runner(dir);

    // Undisturbed runs tell how long a change and save take; the shortest of
    // three, since the first runs with cold caches.
    std::chrono::microseconds full = std::chrono::microseconds::max();
    for (int i = 0; i < 3; ++i) {
        auto begin = std::chrono::steady_clock::now();
        ASSERT_EQ(runner.Run({"set", file, "/note 0/note 1", "Mark", "warm-up"}), 0);
        full = std::min(full, std::chrono::duration_cast<std::chrono::microseconds>(
                                  std::chrono::steady_clock::now() - begin));
    }
    ASSERT_GT(full.count(), 0);

    std::mt19937 random(20261123);
    std::uniform_int_distribution<long> moment(full.count() / 2, full.count() * 21 / 20);
    int keptOld = 0, gotNew = 0;
    for (int trial = 0; trial < kTrials; ++trial) {
        SCOPED_TRACE("trial " + std::to_string(trial));
        const std::string before = Slurp(file);
        const std::string mark = "mark-" + std::to_string(trial);
        pid_t pid = runner.Start({"set", file, "/note 0/note 1", "Mark", mark});
        ASSERT_GT(pid, 0);
        std::this_thread::sleep_for(std::chrono::microseconds(moment(random)));
        ::kill(pid, SIGKILL);
        int status = 0;
        ::waitpid(pid, &status, 0);

        const std::string after = Slurp(file);
        if (after == before) {
            ++keptOld;
            continue;
        }
        // Not the old bytes: it must be the whole new document.
        std::string out;
        ASSERT_EQ(runner.Run({"get", file, "/note 0/note 1", "Mark"}, &out), 0)
            << "the file on disk does not read after a kill";
        EXPECT_EQ(out, mark + "\n");
        ASSERT_EQ(runner.Run({"get", file, "/note 7900/note 7999", "Mark"}, &out), 0);
        EXPECT_EQ(out, "start\n") << "the last note is missing or changed";
        ++gotNew;
    }
    // Kills land in the second half of the run, where the document is
    // written and renamed; the counts show how many reached the rename.
    std::cout << "kept the old document " << keptOld << " times, saw the new one " << gotNew << " times\n";

    // A killed save leaves nothing behind: the folder holds the document and
    // the program's output only.
    auto names = [&] {
        std::vector<std::string> found;
        for (const auto& entry : std::filesystem::directory_iterator(dir))
            found.push_back(entry.path().filename().string());
        std::sort(found.begin(), found.end());
        return found;
    };
    const std::vector<std::string> expected{"large.ryl", "stderr", "stdout"};
    EXPECT_EQ(names(), expected);

    // Interrupted and terminated saves clean up after themselves too, and
    // the file stays whole.
    for (int trial = 0; trial < kTrials / 5; ++trial) {
        SCOPED_TRACE("signal trial " + std::to_string(trial));
        const std::string before = Slurp(file);
        pid_t pid = runner.Start({"set", file, "/note 0/note 1", "Mark", "term-" + std::to_string(trial)});
        ASSERT_GT(pid, 0);
        std::this_thread::sleep_for(std::chrono::microseconds(moment(random)));
        ::kill(pid, trial % 2 ? SIGTERM : SIGINT);
        int status = 0;
        ::waitpid(pid, &status, 0);
        if (Slurp(file) != before) {
            std::string out;
            ASSERT_EQ(runner.Run({"get", file, "/note 7900/note 7999", "Mark"}, &out), 0);
            EXPECT_EQ(out, "start\n");
        }
        EXPECT_EQ(names(), expected);
    }
    std::filesystem::remove_all(dir);
}

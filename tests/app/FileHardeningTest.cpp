// The document file under careless or hostile use: writers at once, links,
// FIFOs, trees as deep as a document can hold, and saves cut short.
#include "CommandHarness.h"

#include <chrono>
#include <csignal>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <thread>

#include "Hypertext.h"
#include "Node.h"
#include "NodeHelpers.h"
#include "TalvikReader.h"
#include "TalvikWriter.h"

using namespace cmdtest;

namespace {

// Runs the program in the background with its output thrown away; answers its pid.
pid_t Spawn(const std::vector<std::string>& args) {
    pid_t pid = ::fork();
    if (pid == 0) {
        std::vector<std::string> all{std::string(RYL_BINARY_DIR) + "/app/rylvane"};
        all.insert(all.end(), args.begin(), args.end());
        std::vector<char*> argv;
        for (auto& a : all)
            argv.push_back(a.data());
        argv.push_back(nullptr);
        int null = ::open("/dev/null", O_WRONLY);
        ::dup2(null, 1);
        ::dup2(null, 2);
        ::execv(argv[0], argv.data());
        ::_exit(127);
    }
    return pid;
}

int Wait(pid_t pid) {
    int status = 0;
    ::waitpid(pid, &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

// Whether the process has ended within `limit`; its exit code in `code`.
bool EndsWithin(pid_t pid, std::chrono::milliseconds limit, int& code) {
    auto until = std::chrono::steady_clock::now() + limit;
    while (std::chrono::steady_clock::now() < until) {
        int status = 0;
        if (::waitpid(pid, &status, WNOHANG) == pid) {
            code = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
            return true;
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
    return false;
}

// The names in a folder but the harness's stderr file.
std::vector<std::string> Names(const std::filesystem::path& folder) {
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(folder))
        if (entry.path().filename() != "stderr")
            names.push_back(entry.path().filename().string());
    std::sort(names.begin(), names.end());
    return names;
}

// A document whose notes "n1/n2/.../nDEPTH" stand in one chain.
void WriteChain(const std::string& path, int depth) {
    Hypertext doc;
    NodeMaker maker(&doc);
    Node* parent = nullptr;
    for (int i = 1; i <= depth; ++i)
        parent = maker.MakeDontInitialize("n" + std::to_string(i), parent, nullptr, 0, 0);
    std::ofstream out(path, std::ios::binary);
    ASSERT_TRUE(TalvikWriter(&doc).Write(out));
}

std::string ChainPath(int depth) {
    std::string path;
    for (int i = 1; i <= depth; ++i)
        path += "/n" + std::to_string(i);
    return path;
}

} // namespace

TEST_F(Commands, WritersWaitForEachOtherAndReadersDoNot) {
    ASSERT_EQ(R({"new", file}).code, 0);
    ASSERT_EQ(R({"add", file, "/", "A"}).code, 0);

    // While another holds the writer's lock, a change waits and a read does not.
    int held = ::open(file.c_str(), O_RDONLY | O_CLOEXEC);
    ASSERT_EQ(::flock(held, LOCK_EX), 0);
    pid_t writer = Spawn({"set", file, "/A", "Color", "red"});
    int code = -1;
    EXPECT_FALSE(EndsWithin(writer, std::chrono::milliseconds(600), code)) << "the change did not wait";
    EXPECT_EQ(R({"get", file, "/A", "Name"}).out, "A\n");
    ::close(held);
    EXPECT_EQ(Wait(writer), 0);
    EXPECT_EQ(R({"get", file, "/A", "Color"}).out, "red\n");

    // Writers started together each keep their change.
    {
        Hypertext doc;
        NodeMaker maker(&doc);
        for (int i = 0; i < 3000; ++i)
            NodeText(maker.MakeDontInitialize("filler " + std::to_string(i), nullptr, nullptr, 0, 0))
                .SetText("some text to give the file weight");
        std::ofstream out(file, std::ios::binary);
        ASSERT_TRUE(TalvikWriter(&doc).Write(out));
    }
    std::vector<pid_t> writers;
    for (int i = 0; i < 6; ++i)
        writers.push_back(Spawn({"add", file, "/", "W" + std::to_string(i)}));
    for (pid_t pid : writers)
        EXPECT_EQ(Wait(pid), 0);
    std::string tree = R({"tree", file}).out;
    for (int i = 0; i < 6; ++i)
        EXPECT_NE(tree.find("\nW" + std::to_string(i) + "\n"), std::string::npos) << "W" << i << " was lost";
    EXPECT_EQ(Names(dir), std::vector<std::string>{"notes.ryl"});
}

TEST_F(Commands, SavesFollowLinksKeepTheModeAndRefuseToBreakHardLinks) {
    std::filesystem::create_directories(dir / "real");
    const std::string target = (dir / "real" / "doc.ryl").string();
    ASSERT_EQ(R({"new", target}).code, 0);
    ASSERT_EQ(::chmod(target.c_str(), 0640), 0);
    const std::string link = (dir / "link.ryl").string();
    std::filesystem::create_symlink("real/doc.ryl", link);

    EXPECT_EQ(R({"add", link, "/", "A"}).out, "/A\n");
    EXPECT_TRUE(std::filesystem::is_symlink(link));
    EXPECT_EQ(R({"tree", target}).out, "A\n");
    struct stat saved {};
    ASSERT_EQ(::stat(target.c_str(), &saved), 0);
    EXPECT_EQ(saved.st_mode & 07777, 0640u);
    EXPECT_EQ(saved.st_uid, ::getuid());
    EXPECT_EQ(Names(dir / "real"), std::vector<std::string>{"doc.ryl"});
    EXPECT_EQ(Names(dir), (std::vector<std::string>{"link.ryl", "real"}));

    // A second name for the same file: a save would leave it behind.
    const std::string hard = (dir / "hard.ryl").string();
    std::filesystem::create_hard_link(target, hard);
    const std::string before = Slurp(target);
    ExpectFailure(R({"add", hard, "/", "B"}), hard + ": has 2 hard links");
    ExpectFailure(R({"add", link, "/", "B"}), "hard links");
    EXPECT_EQ(Slurp(target), before);
    EXPECT_EQ(std::filesystem::hard_link_count(target), 2u);
}

TEST_F(Commands, OnlyRegularFilesAreOpened) {
    const std::string fifo = (dir / "fifo.ryl").string();
    ASSERT_EQ(::mkfifo(fifo.c_str(), 0600), 0);
    for (const char* command : {"tree", "add"}) {
        std::vector<std::string> args{command, fifo};
        if (std::string(command) == "add")
            args.insert(args.end(), {"/", "X"});
        pid_t pid = Spawn(args);
        int code = -1;
        bool ended = EndsWithin(pid, std::chrono::seconds(5), code);
        if (!ended) {
            ::kill(pid, SIGKILL);
            Wait(pid);
        }
        EXPECT_TRUE(ended) << command << " blocked on a FIFO";
        EXPECT_EQ(code, 1);
    }
    ExpectFailure(R({"tree", fifo}), fifo + ": not a regular file");
    ExpectFailure(R({"tree", dir.string()}), "is a folder");
    const std::string longName = (dir / std::string(300, 'x')).string();
    ExpectFailure(R({"tree", longName}), longName + ": File name too long");
    ExpectFailure(R({"tree", (dir / "none.ryl").string()}), "none.ryl: no such file");
}

TEST_F(Commands, NoChangeMakesATreeDeeperThanReadingAccepts) {
    const int deepest = TalvikReader::kMaxNoteDepth;
    // The deepest a document holds reads; one more does not.
    WriteChain(file, deepest + 1);
    ExpectFailure(R({"tree", file}), "nested too deeply");
    WriteChain(file, deepest);
    EXPECT_EQ(R({"get", file, ChainPath(deepest), "Name"}).out, "n" + std::to_string(deepest) + "\n");

    const std::string before = Slurp(file);
    ExpectFailure(R({"add", file, ChainPath(deepest), "X"}), "nested " + std::to_string(deepest + 1) + " deep");
    EXPECT_EQ(Slurp(file), before);
    // A branch three deep moved under a note that leaves room for two levels.
    EXPECT_EQ(R({"add", file, "/", "B1"}).code, 0);
    EXPECT_EQ(R({"add", file, "/B1", "B2"}).code, 0);
    EXPECT_EQ(R({"add", file, "/B1/B2", "B3"}).code, 0);
    ExpectFailure(R({"mv", file, "/B1", ChainPath(deepest - 2)}), "a document holds at most");
    EXPECT_EQ(R({"mv", file, "/B1/B2", ChainPath(deepest - 2)}).code, 0);
    EXPECT_EQ(R({"get", file, ChainPath(deepest - 2) + "/B2/B3", "Name"}).out, "B3\n");
    EXPECT_EQ(R({"add", file, ChainPath(deepest - 1), "Y"}).code, 0);
    EXPECT_EQ(R({"get", file, ChainPath(deepest - 1) + "/Y", "Name"}).out, "Y\n");
}

TEST_F(Commands, AnswersTellWhatReallyHappened) {
    ASSERT_EQ(R({"new", file}).code, 0);
    ASSERT_EQ(R({"add", file, "/", "P"}).code, 0);
    ASSERT_EQ(R({"add", file, "/", "Q"}).code, 0);

    // Output that cannot be written fails the command.
    const std::string program = Quote(std::string(RYL_BINARY_DIR) + "/app/rylvane");
    const std::string errFile = (dir / "stderr").string();
    for (const std::string redirect : {" >/dev/full", " >&-"}) {
        int status = std::system((program + " tree " + Quote(file) + redirect + " 2>" + Quote(errFile)).c_str());
        EXPECT_EQ(WIFEXITED(status) ? WEXITSTATUS(status) : -1, 1) << redirect;
        EXPECT_NE(Slurp(errFile).find("rylvane: cannot write the output"), std::string::npos) << Slurp(errFile);
    }

    // Prototypes the model refuses are refused aloud.
    const std::string before = Slurp(file);
    ExpectFailure(R({"set", file, "/P", "Prototype", "P"}), file + ": /P cannot be its own prototype");
    ASSERT_EQ(R({"set", file, "/Q", "Prototype", "P"}).code, 0);
    ExpectFailure(R({"set", file, "/P", "Prototype", "Q"}), "Q cannot be the prototype of /P");
    ExpectFailure(R({"set", file, "/P", "Prototype", "Nobody"}), "no note named Nobody");
    EXPECT_EQ(R({"get", file, "/P", "Prototype"}).out, "\n");

    // Names: bytes that are no UTF-8 are refused; the path printed is the one made.
    ExpectFailure(R({"add", file, "/", "a\xff" "b"}), "not valid UTF-8");
    ExpectFailure(R({"set", file, "/P", "Name", "a\xc3"}), "not valid UTF-8");
    // Whatever the model keeps of a name, the path printed leads to the note made.
    RunResult made = R({"add", file, "/", "tab\there"});
    ASSERT_EQ(made.code, 0);
    ASSERT_EQ(std::count(made.out.begin(), made.out.end(), '\n'), 1);
    std::string line = made.out[0] == '"' ? "\"" + made.out.substr(2) : made.out.substr(1);
    std::string tree = R({"tree", file}).out;
    EXPECT_EQ(tree.substr(tree.size() - line.size()), line) << tree;

    // A value that begins with "-" gets a hint.
    ExpectFailure(R({"set", file, "/P", "Name", "-x"}), "needs \"--\" before it");
    EXPECT_EQ(R({"set", file, "/P", "Name", "--", "-x"}).code, 0);

    // Unknown versions are refused whatever they look like.
    for (const std::string version : {"abc", "99999999999999999999", "-1"}) {
        std::ofstream(file) << "<?xml version=\"1.0\"?>\n<rylvane version=\"" << version << "\"></rylvane>\n";
        ExpectFailure(R({"info", file}), "version " + version + " files are not supported");
    }
}

TEST_F(Commands, NamesWithControlCharactersAreQuotedInLines) {
    {
        Hypertext doc;
        NodeMaker maker(&doc);
        Node* fake = maker.MakeDontInitialize("line\nfake", nullptr, nullptr, 0, 0);
        maker.MakeDontInitialize("\"quoted\"", fake, nullptr, 0, 0);
        maker.MakeDontInitialize("plain", nullptr, fake, 0, 0);
        std::ofstream out(file, std::ios::binary);
        ASSERT_TRUE(TalvikWriter(&doc).Write(out));
    }
    EXPECT_EQ(R({"tree", file}).out, "\"line\\nfake\"\n  \"\\\"quoted\\\"\"\nplain\n");
    EXPECT_EQ(R({"add", file, "/line\nfake", "x\x01y"}).out, "\"/line\\nfake/x\\x01y\"\n");
    EXPECT_NE(R({"--help"}).out.find("double quotes"), std::string::npos);
}

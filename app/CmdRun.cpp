// `rylvane run FILE`: keeps a document alive with its timers, as an open
// window would: agents, rules and edicts run as their dispatchers fire.
// Saves at the end, every --save-every, and on SIGINT or SIGTERM (with the
// dispatchers suspended around each save); the file on disk is always a
// whole document, the old one or a new one.
#include <csignal>
#include <cstdio>
#include <functional>
#include <iostream>
#include <sstream>
#include <unistd.h>

#include <boost/asio/post.hpp>
#include <boost/asio/signal_set.hpp>

#include "Agent.h"
#include "AgentHooks.h"
#include "AgentManager.h"
#include "Commands.h"
#include "DocumentSession.h"
#include "Hypertext.h"
#include "HypertextQueues.h"
#include "NotificationCenter.h"
#include "RuleManager.h"
#include "RylDispatcherList.h"
#include "RylRunLoop.h"
#include "TalvikWriter.h"

namespace {

struct RunState {
    std::string file;
    std::string forText;
    std::string saveEveryText;
    bool untilQuiet = false;
    bool fast = false;
};

// "90", "90s", "500ms", "15m", "2h", "1d" in seconds; negative when the text is none of these.
double ParseDuration(const std::string& text) {
    if (text.empty())
        return -1;
    size_t used = 0;
    double amount;
    try {
        amount = std::stod(text, &used);
    } catch (...) {
        return -1;
    }
    std::string unit = text.substr(used);
    if (amount < 0)
        return -1;
    if (unit.empty() || unit == "s")
        return amount;
    if (unit == "ms")
        return amount / 1000;
    if (unit == "m" || unit == "min")
        return amount * 60;
    if (unit == "h")
        return amount * 3600;
    if (unit == "d")
        return amount * 86400;
    return -1;
}

size_t WrittenHash(Hypertext* document) {
    std::ostringstream out;
    TalvikWriter(document).Write(out);
    return std::hash<std::string>()(out.str());
}

// Holds SIGINT and SIGTERM back while it lives: one that arrives meanwhile
// waits, and is taken when they are let through again, so that a stop asked
// for while the document opens or saves ends the run with its save instead
// of cutting it short.
class StHoldStopSignals {
public:
    StHoldStopSignals() {
        sigset_t stop;
        sigemptyset(&stop);
        sigaddset(&stop, SIGINT);
        sigaddset(&stop, SIGTERM);
        ::sigprocmask(SIG_BLOCK, &stop, &previous);
    }
    ~StHoldStopSignals() { ::sigprocmask(SIG_SETMASK, &previous, nullptr); }
    StHoldStopSignals(const StHoldStopSignals&) = delete;
    StHoldStopSignals& operator=(const StHoldStopSignals&) = delete;

private:
    sigset_t previous;
};

int RunRun(const RunState& state) {
    InstallAgentHooks();
    // Until the loop listens for them, stop signals wait.
    auto holdUntilListening = std::make_unique<StHoldStopSignals>();
    double duration = state.forText.empty() ? 1e18 : ParseDuration(state.forText);
    if (duration < 0)
        return CommandFailure("--for: not a duration: " + state.forText);
    double saveEvery = state.saveEveryText.empty() ? 0 : ParseDuration(state.saveEveryText);
    if (saveEvery < 0 || (!state.saveEveryText.empty() && saveEvery <= 0))
        return CommandFailure("--save-every: not a duration: " + state.saveEveryText);
    std::string error;
    auto session = DocumentSession::Open(state.file, true, error);
    if (!session)
        return CommandFailure(error);
    Hypertext* document = session->Document();
    AgentManager* agents = AgentManager::For(document);
    RuleManager* rules = RuleManager::For(document);
    agents->Loaded();

    RylRunLoop loop(state.fast);
    // Notifications reach their observers on the loop's thread.
    StMainThreadPoster poster(NotificationCenter::Default(), [&loop](std::function<void()> block) {
        boost::asio::post(loop.Context(), std::move(block));
    });
    HypertextQueues queues(document, loop);
    RylDispatcherList dispatchers;
    dispatchers.ForDocument(queues);

    size_t savedHash = WrittenHash(document);
    bool saveFailed = false;
    auto save = [&]() {
        StHoldStopSignals holdWhileSaving;
        dispatchers.Suspend();
        agents->WillWrite();
        size_t hash = WrittenHash(document);
        if (hash != savedHash) {
            if (session->Save(error))
                savedHash = hash;
            else
                saveFailed = true;
        }
        agents->DidWrite();
        dispatchers.Resume();
    };

    boost::asio::signal_set signals(loop.Context(), SIGINT, SIGTERM);
    signals.async_wait([&loop](const boost::system::error_code& e, int) {
        if (!e)
            loop.Stop();
    });
    holdUntilListening.reset();

    std::function<void()> periodicSave = [&] {
        save();
        if (saveFailed) {
            loop.Stop();
            return;
        }
        loop.Schedule(saveEvery, periodicSave);
    };
    if (saveEvery > 0)
        loop.Schedule(saveEvery, periodicSave);

    // Quiet: a full rule scan that changed nothing, then a pass of every
    // agent that changed nothing either.
    long scansSeen = rules->ScansFinished();
    size_t hashAtScan = savedHash;
    std::function<void()> quietCheck = [&] {
        if (rules->ScansFinished() > scansSeen) {
            scansSeen = rules->ScansFinished();
            size_t hash = WrittenHash(document);
            if (hash == hashAtScan) {
                long changedBefore = agents->PassesChanged();
                agents->UpdateAll();
                if (agents->PassesChanged() == changedBefore && WrittenHash(document) == hash) {
                    loop.Stop();
                    return;
                }
                hash = WrittenHash(document);
            }
            hashAtScan = hash;
        }
        loop.Schedule(1, quietCheck);
    };
    if (state.untilQuiet)
        loop.Schedule(1, quietCheck);

    // The progress line counts what the agent and rule notifications tell:
    // each agent of an update, each rule and edict about to run.
    bool progress = ::isatty(2);
    long agentsRun = 0;
    long rulesRun = 0;
    uint64_t changesAtStart = document->ChangeCount();
    NotificationCenter& center = NotificationCenter::Default();
    std::vector<NotificationCenter::ObserverID> observing;
    if (progress) {
        observing.push_back(center.AddObserver(AgentManager::kAgentNotification, document,
                                               [&agentsRun](const Notification& n) {
                                                   if (n.Number("number") > 0)
                                                       ++agentsRun;
                                               }));
        observing.push_back(center.AddObserver(RuleManager::kRuleNotification, document,
                                               [&rulesRun](const Notification&) { ++rulesRun; }));
    }
    std::function<void()> report = [&] {
        long ticks = 0;
        for (const auto& d : dispatchers.Dispatchers())
            ticks += d->Fired();
        std::fprintf(stderr, "\rticks %ld, agents run %ld, agents changed %ld, rules run %ld, changes %llu ", ticks,
                     agentsRun, agents->PassesChanged(), rulesRun,
                     static_cast<unsigned long long>(document->ChangeCount() - changesAtStart));
        loop.Schedule(state.fast ? 60 : 1, report);
    };
    if (progress)
        loop.Schedule(0, report);

    loop.RunFor(duration);
    // A stop asked for from here on waits for the last save.
    StHoldStopSignals holdToTheEnd;
    dispatchers.Cancel();
    queues.CancelAll();
    signals.cancel();
    for (NotificationCenter::ObserverID id : observing)
        center.RemoveObserver(id);
    if (progress)
        std::fprintf(stderr, "\n");
    if (saveFailed)
        return CommandFailure(error);
    save();
    if (saveFailed)
        return CommandFailure(error);
    return 0;
}

CommandRegistration registration(
    "run",
    [](CLI::App& app, CommandResult& result) {
        auto state = std::make_shared<RunState>();
        auto* cmd = app.add_subcommand(
            "run", "Keep a document running with its agent, rule and edict timers; save at the end, on SIGINT or "
                   "SIGTERM and every --save-every");
        cmd->add_option("FILE", state->file, "The document file")->required();
        cmd->add_option("--for", state->forText, "How long to run, such as 90s, 15m or 1h (default: until a signal)");
        cmd->add_flag("--until-quiet", state->untilQuiet,
                      "Stop after a full rule scan and a pass of every agent that changed nothing");
        cmd->add_flag("--fast", state->fast, "Run the timers on a simulated clock: an hour of ticks takes seconds");
        cmd->add_option("--save-every", state->saveEveryText, "Save at this interval too, such as 5m");
        cmd->callback([&result, state] { result.code = RunRun(*state); });
    },
    64);

}  // namespace

// Notes read and written from several threads at once, as agents and rules
// do beside the main thread: values go through the note's lock, and the
// parts a note makes on first use are seen whole by every thread.
#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <memory>
#include <thread>
#include <vector>

#include "Attribute.h"
#include "Props.h"
#include "TestDocument.h"
#include "Value.h"

namespace {

// Starts `count` threads running `body(t)` for t = 0, 1, ...; each waits
// until all have started, so that they run at the same time.
template <typename Body>
std::vector<std::thread> StartTogether(int count, Body body) {
    auto ready = std::make_shared<std::atomic<int>>(0);
    std::vector<std::thread> threads;
    for (int t = 0; t < count; ++t)
        threads.emplace_back([ready, count, t, body] {
            ++*ready;
            while (ready->load() < count)
                std::this_thread::yield();
            body(t);
        });
    return threads;
}

}  // namespace

TEST(NodeThreads, AttributesOfTheSameNotesFromSeveralThreads) {
    Hypertext doc;
    const Attribute* score = doc.AttributeStorage()->CreateBasicAttribute("Score", "User", true, AttributeType::kNumber);
    ASSERT_NE(score, nullptr);
    std::vector<Node*> notes;
    for (int i = 0; i < 400; ++i)
        notes.push_back(MakeNote(doc, "N" + std::to_string(i)));

    constexpr int kThreads = 4;
    constexpr int kRounds = 8;
    std::atomic<long> seen{0};
    std::vector<std::thread> threads = StartTogether(kThreads, [&](int t) {
        // Parts made on first use by one thread and read by the others
        // without the note's lock. Each thread starts at another note.
        for (int round = 0; round < kRounds; ++round)
            for (size_t i = 0; i < notes.size(); ++i) {
                Node* note = notes[(i + t * notes.size() / kThreads) % notes.size()];
                seen += static_cast<long>(note->Aliases().size());
                seen += static_cast<long>(note->GetPrototypeRequest().size());
                seen += note->OldAdornments() ? 1 : 0;
                if ((round + t) % 2 == 0)
                    note->SetOutputWorkingString("t" + std::to_string(t));
                else
                    seen += static_cast<long>(note->OutputWorkingString().size());
                if (t == 0)
                    note->GetNodeAliases();
                if (t == 1)
                    note->GetPrototypeCache();
            }
        // Values: written under the lock, read as clones.
        for (int round = 0; round < kRounds; ++round)
            for (Node* note : notes) {
                note->DoSet(score, Value::ForInt(round * kThreads + t));
                ValuePtr value(note->CreateClonedValue(score));
                if (value)
                    seen += value->AsLong() >= 0 ? 1 : 0;
                ValuePtr name(note->CreateClonedValue("Name"));
                EXPECT_EQ(name->AsString(), note->Name());
            }
    });
    for (auto& thread : threads)
        thread.join();
    EXPECT_GT(seen.load(), 0);
    for (Node* note : notes) {
        long last = note->GetLong("Score");
        EXPECT_GE(last, (kRounds - 1) * kThreads);
        EXPECT_LT(last, kRounds * kThreads);
        EXPECT_NE(note->GetPrototypeCache(), nullptr);
        EXPECT_EQ(note->OutputWorkingString().size(), 2u);
    }
}

// Paths, containers, aliases and prototypes are computed from other notes'
// names. One thread reads them for a note deep in the tree while others read
// the same attributes of its ancestors: a read must never hold one note's
// lock (or an attribute's queue) while it waits for another note's lock, or
// two such readers wait on each other for ever.
TEST(NodeThreads, ComputedReadsOfAncestorsNeverWaitOnEachOther) {
    // Left alive if the readers hang, so that no lock they hold is destroyed.
    auto* doc = new Hypertext();
    std::vector<Node*> chain;
    Node* parent = nullptr;
    for (int i = 0; i < 6; ++i) {
        parent = MakeNote(*doc, "N" + std::to_string(i), parent);
        chain.push_back(parent);
    }
    Node* leaf = chain.back();
    Node* alias = NodeMaker(doc).MakeAlias(leaf, chain[1], nullptr);
    ASSERT_NE(alias, nullptr);
    chain[2]->SetPrototype(chain[0], false);
    const std::string leafPath = "/N0/N1/N2/N3/N4/N5";

    constexpr int kThreads = 4;
    constexpr int kRounds = 300;
    std::atomic<int> finished{0};
    std::atomic<int> wrong{0};
    std::vector<std::thread> threads = StartTogether(kThreads, [&](int t) {
        for (int round = 0; round < kRounds; ++round) {
            // Even threads read from the leaf up, odd ones each ancestor.
            if (t % 2 == 0) {
                wrong += leaf->GetString("Path") != leafPath;
                wrong += leaf->GetString("Container") != "/N0/N1/N2/N3/N4";
                wrong += leaf->GetString("Aliases") != "/N0/N1/N5";
                ValuePtr path(alias->CreateClonedValue("Path"));
                wrong += path->AsString() != "/N0/N1/N5";
            } else {
                for (size_t i = 0; i < chain.size(); ++i) {
                    Node* note = chain[(i + round) % chain.size()];
                    wrong += note->GetString("Path").empty();
                    ValuePtr container(note->CreateClonedValue("Container"));
                    wrong += note != chain[0] && container->AsString().empty();
                }
                wrong += chain[2]->GetString("Prototype") != "N0";
            }
        }
        ++finished;
    });
    for (int waited = 0; waited < 600 && finished.load() < kThreads; ++waited)
        std::this_thread::sleep_for(std::chrono::milliseconds(100));
    if (finished.load() < kThreads) {
        for (auto& thread : threads)
            thread.detach();
        FAIL() << "readers of computed attributes are still waiting after a minute";
    }
    for (auto& thread : threads)
        thread.join();
    EXPECT_EQ(wrong.load(), 0);
    delete doc;
}

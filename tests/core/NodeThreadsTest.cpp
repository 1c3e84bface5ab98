// Notes read and written from several threads at once, as agents and rules
// do beside the main thread: values go through the note's lock, and the
// parts a note makes on first use are seen whole by every thread.
#include <gtest/gtest.h>

#include <atomic>
#include <thread>
#include <vector>

#include "Attribute.h"
#include "Props.h"
#include "TestDocument.h"
#include "Value.h"

TEST(NodeThreads, AttributesOfTheSameNotesFromSeveralThreads) {
    Hypertext doc;
    const Attribute* score = doc.AttributeStorage()->CreateBasicAttribute("Score", "User", true, AttributeType::kNumber);
    ASSERT_NE(score, nullptr);
    std::vector<Node*> notes;
    for (int i = 0; i < 400; ++i)
        notes.push_back(MakeNote(doc, "N" + std::to_string(i)));

    constexpr int kThreads = 4;
    constexpr int kRounds = 8;
    std::atomic<int> ready{0};
    std::atomic<long> seen{0};
    std::vector<std::thread> threads;
    for (int t = 0; t < kThreads; ++t)
        threads.emplace_back([&, t] {
            ++ready;
            while (ready.load() < kThreads)
                std::this_thread::yield();
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

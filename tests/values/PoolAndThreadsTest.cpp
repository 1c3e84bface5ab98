#include <gtest/gtest.h>

#include <atomic>
#include <thread>
#include <vector>

#include "DateValue.h"
#include "PString.h"
#include "Hooks.h"
#include "ValueRecyclingPool.h"

namespace {

// Counts its own destruction.
struct Tracked : StringValue {
    static std::atomic<int> destroyed;
    Tracked() : StringValue("tracked") {}
    ~Tracked() override { ++destroyed; }
};
std::atomic<int> Tracked::destroyed{0};

}  // namespace

TEST(ValueRecyclingPoolTest, DefersReleaseUntilDrained) {
    Tracked::destroyed = 0;
    {
        ValueRecyclingPool pool;
        pool.Add(nullptr);
        for (int i = 0; i < 999; ++i) pool.Add(new Tracked);
        EXPECT_EQ(pool.PoolSize(), 999u);
        pool.DrainIfNeeded();
        EXPECT_EQ(Tracked::destroyed, 0);  // below the threshold
        pool.Add(new Tracked);
        pool.DrainIfNeeded();
        EXPECT_EQ(Tracked::destroyed, 1000);
        EXPECT_EQ(pool.PoolSize(), 0u);

        // With a main-thread runner installed, release waits for it.
        std::vector<std::function<void()>> mainQueue;
        StHooks hooks;
        hooks->runOnMainThread = [&](std::function<void()> block) { mainQueue.push_back(block); };
        pool.Add(new Tracked);
        pool.Drain();
        EXPECT_EQ(Tracked::destroyed, 1000);
        ASSERT_EQ(mainQueue.size(), 1u);
        mainQueue.front()();
        EXPECT_EQ(Tracked::destroyed, 1001);
        hooks->runOnMainThread = nullptr;

        pool.Add(new Tracked);
    }
    EXPECT_EQ(Tracked::destroyed, 1002);  // the destructor drains
}

TEST(ValueThreads, SharedCountsSurviveConcurrentUse) {
    DateValue* date = dynamic_cast<DateValue*>(Value::ForDate(STime(5000.0)));
    ASSERT_NE(date, nullptr);
    Value* yes = Value::ForBoolean(true);
    auto* shared = dynamic_cast<CountedBooleanValue*>(yes);
    long before = shared->Count();
    StringValue code("$A=1");
    std::vector<std::thread> threads;
    for (int t = 0; t < 4; ++t) {
        threads.emplace_back([&] {
            for (int i = 0; i < 2000; ++i) {
                Value* c = date->Clone();
                EXPECT_EQ(c->AsXML(), "1970-01-01T01:23:20Z");
                c->Delete();
                yes->Clone();
                code.AsAgentAction(nullptr);
            }
        });
    }
    for (auto& thread : threads) thread.join();
    EXPECT_EQ(date->Count(), 1);
    EXPECT_EQ(shared->Count(), before + 8000);
    date->Delete();
}

TEST(PStringTest, LengthPrefixed) {
    PString p("Hello");
    EXPECT_EQ(p.size(), 5);
    EXPECT_EQ(p.p_str()[0], 5);
    EXPECT_STREQ(p.c_str(), "Hello");
    EXPECT_TRUE(p == "Hello");
    EXPECT_TRUE(p == std::string("Hello"));
    EXPECT_FALSE(p == "Hell");

    PString longText(std::string(300, 'x'));
    EXPECT_EQ(longText.size(), 255);

    const unsigned char pascal[] = {3, 'a', 'b', 'c'};
    PString fromPascal(pascal);
    EXPECT_EQ(fromPascal.str(), "abc");

    p.Truncate(2);
    EXPECT_STREQ(p.c_str(), "He");
    p.Truncate(10);
    EXPECT_EQ(p.size(), 2);

    unsigned char small[3];
    PString("abcdef").CopyTo(small, 3);
    EXPECT_EQ(small[0], 2);
    EXPECT_EQ(small[2], 'b');

    unsigned char buffer[256] = {2, 'o', 'k'};
    PString::PtoCstr(buffer);
    EXPECT_STREQ(reinterpret_cast<char*>(buffer), "ok");
    PString::CtoPstr(reinterpret_cast<char*>(buffer));
    EXPECT_EQ(buffer[0], 2);
    EXPECT_EQ(buffer[1], 'o');

    PString menu("Save; As^!</(x");
    menu.RemoveSpecialMenuCharacters();
    EXPECT_EQ(menu.str(), "Save Asx");
    EXPECT_TRUE(PString("a") < PString("b"));
}

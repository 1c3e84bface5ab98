#include "RylSerial.h"
#include "Log.h"

#include <gtest/gtest.h>

#include <atomic>
#include <vector>

TEST(RylSerial, AsyncBlocksRunInOrderAndDoNotOverlapWithSync) {
    RylSerial queue("com.morvent.rylvane.test");
    std::vector<int> order;
    for (int i = 0; i < 200; ++i)
        queue.Async([&order, i] { order.push_back(i); });
    // A synchronous block may re-enter its own queue.
    int inner = queue.Sync([&] { return queue.Sync([] { return 7; }); });
    queue.Drain();
    EXPECT_EQ(inner, 7);
    ASSERT_EQ(order.size(), 200u);
    for (int i = 0; i < 200; ++i)
        EXPECT_EQ(order[i], i);
}

TEST(OperationQueue, RespectsWidthAndPriority) {
    OperationQueue queue("test", 2);
    std::atomic<int> running{0}, peak{0};
    for (int i = 0; i < 20; ++i)
        queue.AddOperation([&] {
            int now = ++running;
            int p = peak.load();
            while (now > p && !peak.compare_exchange_weak(p, now)) {}
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
            --running;
        });
    queue.WaitUntilAllOperationsAreFinished();
    EXPECT_LE(peak.load(), 2);
    EXPECT_EQ(queue.OperationCount(), 0);
}

TEST(Log, CaptureSeesFormattedLines) {
    StLogCapture capture;
    LogFormat("Invalid elder moving %s", "Plan");
    EXPECT_TRUE(capture.Contains("Invalid elder moving Plan\n"));
}

// The standalone host: workers, the failure table, abort and progress, and pixel memory.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <mutex>
#include <set>
#include <thread>

#include "image/core/ImageBuffer.h"
#include "tests/support/BareHost.h"

namespace Tw::Host::Standalone {
namespace TW_FILE_LOCAL {

using ::testing::ElementsAre;
using Tw::Test::BareHost;

// Calls `body(slice, threadIndex)` from host.thread.
template <class Body>
void runThreads(Host& host, uint32_t threads, Body body) {
    host.thread(
        [](uint32_t slice, uint32_t, uint32_t threadIndex, void* closure) {
            (*static_cast<Body*>(closure))(slice, threadIndex);
            return 0;
        },
        &body, threads);
}

TEST(StandaloneHost, SingleWorkerRunsOnTheCallingThreadAndLetsExceptionsThrough) {
    BareHost host;
    host.threadCount = 1;
    std::thread::id ranOn;
    uint32_t calls = 0;
    host.thread(
        [](uint32_t slice, uint32_t count, uint32_t threadIndex, void* closure) {
            EXPECT_EQ(slice, 0u);
            EXPECT_EQ(count, 1u);
            EXPECT_EQ(threadIndex, 0u);
            *static_cast<std::thread::id*>(closure) = std::this_thread::get_id();
            return 0;
        },
        &ranOn, 0);
    EXPECT_EQ(ranOn, std::this_thread::get_id());
    try {
        runThreads(host, 0, [&](uint32_t, uint32_t) {
            ++calls;
            throw std::runtime_error("kept as it is");
        });
        FAIL();
    } catch (const std::runtime_error& error) {
        EXPECT_STREQ(error.what(), "kept as it is");
    }
    EXPECT_EQ(calls, 1u);
}

TEST(StandaloneHost, EverySliceRunsOnceOnAWorkerWithAStableIndex) {
    WorkerPool pool(3);
    BareHost host(pool);
    for (uint32_t slices : {2u, 3u, 10u}) {
        std::mutex mutex;
        std::multiset<uint32_t> seen;
        std::set<std::pair<uint32_t, std::thread::id>> workers;
        runThreads(host, slices, [&](uint32_t slice, uint32_t threadIndex) {
            std::lock_guard lock(mutex);
            seen.insert(slice);
            workers.emplace(threadIndex, std::this_thread::get_id());
        });
        EXPECT_EQ(seen.size(), slices);
        for (uint32_t slice = 0; slice < slices; ++slice)
            EXPECT_EQ(seen.count(slice), 1u);
        std::set<uint32_t> indices;
        for (const auto& [index, id] : workers) {
            EXPECT_LT(index, 3u);
            indices.insert(index);
            if (index == 0) {
                EXPECT_EQ(id, std::this_thread::get_id());
            }
        }
        EXPECT_EQ(indices.size(), workers.size());  // one thread per index
    }
}

TEST(StandaloneHost, WorkerFailuresReachTheCallerAsOneException) {
    WorkerPool pool(4);
    const auto failIn = [&](uint32_t failingSlice, auto throwIt) {
        BareHost host(pool);
        runThreads(host, 4, [&](uint32_t slice, uint32_t) {
            if (slice == failingSlice) throwIt();
        });
        return host.abortCode();
    };
    EXPECT_THROW(failIn(2, [] { throw std::bad_alloc(); }), std::bad_alloc);
    try {
        failIn(3, [] { throw Tw::Exception("Kernel", "this text is not kept"); });
        FAIL();
    } catch (const Tw::Exception& error) {
        EXPECT_STREQ(error.what(), "Host::thread: An unknown error occurred in a thread.");
    }
    // An interruption seen by a worker alone leaves the decision to the caller, who has no abort pending.
    EXPECT_EQ(failIn(1, [] { throw Tw::Interrupted(); }), 0);
}

TEST(StandaloneHost, CancelStopsTheRenderOnEveryThreadFromThenOn) {
    std::atomic<bool> cancel{false};
    BareHost host;
    host.setCancelFlag(&cancel);
    host.checkAbort(0);
    cancel = true;
    host.checkAbort(2);  // workers never ask the caller's flag themselves
    EXPECT_THROW(host.checkAbort(0), Tw::Interrupted);
    EXPECT_EQ(host.abortCode(), ErrorCode::kInterrupted);
    cancel = false;
    EXPECT_THROW(host.checkAbort(2), Tw::Interrupted);
    EXPECT_THROW(host.reportProgress(1, 0, 1), Tw::Interrupted);
}

TEST(StandaloneHost, AbortInAWorkerBandReachesTheCaller) {
    WorkerPool pool(2);
    BareHost host(pool);
    host.setProgressCallback([](uint64_t, uint64_t) { return false; });
    EXPECT_THROW(runThreads(host, 0,
                            [&](uint32_t, uint32_t threadIndex) {
                                for (int row = 0; row < 1000; ++row)
                                    host.reportProgress(threadIndex, row, 1000);
                            }),
                 Tw::Interrupted);
    EXPECT_EQ(host.abortCode(), ErrorCode::kInterrupted);
}

TEST(StandaloneHost, ProgressIsFoldedThroughTheLevelsOnThreadZeroOnly) {
    BareHost host;
    std::vector<std::pair<uint64_t, uint64_t>> reports;
    host.setProgressCallback([&](uint64_t done, uint64_t total) {
        reports.emplace_back(done, total);
        return true;
    });
    host.reportProgress(0, 0, 0);  // nothing folds: 0 of 1
    host.progressLevels().startRender(4);
    host.progressLevels().startNode(2);
    host.reportProgress(0, 16, 32);
    host.reportProgress(1, 16, 32);  // a worker's report never reaches the callback
    host.progressLevels().finishNode(2);
    host.progressLevels().startNode(1);
    host.reportProgress(0, 1, 3);
    using Report = std::pair<uint64_t, uint64_t>;
    EXPECT_THAT(reports, ElementsAre(Report{0, 1}, Report{1000, 4000}, Report{2333, 4000}));

    // A frozen level belongs to its owner: the graph's calls leave it alone.
    host.progressLevels().levels[1].frozen = true;
    host.progressLevels().startRender(9);
    host.progressLevels().finishNode(5);
    EXPECT_EQ(host.progressLevels().levels[1].count, 4u);
    EXPECT_EQ(host.progressLevels().levels[1].index, 2u);
}

TEST(StandaloneHost, PixelMemoryIsCountedAndCanBeLimited) {
    BareHost host;
    {
        Image::ImageBuffer a(&host), b(&host);
        a.allocateDepth({0, 0, 10, 10}, 8);   // 10 * 4 bytes padded to 64 per row
        b.allocateDepth({0, 0, 10, 10}, 32);  // 160 bytes per row
        EXPECT_EQ(host.allocationCount(), 2u);
        EXPECT_EQ(host.bytesInUse(), 640u + 1600u);
    }
    EXPECT_EQ(host.bytesInUse(), 0u);
    EXPECT_EQ(host.peakBytes(), 2240u);

    host.memoryLimit = 1000;
    Image::ImageBuffer refused(&host);
    EXPECT_THROW(refused.allocateDepth({0, 0, 10, 10}, 32), std::bad_alloc);
    EXPECT_FALSE(refused.hasStorage());
    EXPECT_EQ(host.bytesInUse(), 0u);
}

TEST(StandaloneHost, ReleasedBlocksServeTheNextRenderUpToThePeak) {
    BareHost host;
    const std::byte* first;
    {
        Image::ImageBuffer a(&host), b(&host);
        a.allocateDepth({0, 0, 10, 10}, 8);
        b.allocateDepth({0, 0, 10, 10}, 32);
        first = a.pixelAddress(0, 0);
    }
    EXPECT_EQ(host.bytesCached(), 640u + 1600u);

    // The same size gets the kept block; another size gets fresh memory and leaves the kept one.
    Image::ImageBuffer again(&host), other(&host);
    again.allocateDepth({0, 0, 10, 10}, 8);
    other.allocateDepth({0, 0, 20, 10}, 8);
    EXPECT_EQ(again.pixelAddress(0, 0), first);
    EXPECT_EQ(host.allocationCount(), 3u);
    EXPECT_EQ(host.bytesCached(), 1600u);
    EXPECT_EQ(host.bytesInUse(), 640u + 960u);

    // Never more is kept than was once held at a time (2240 bytes): the last block goes.
    again.release();
    other.release();
    EXPECT_EQ(host.bytesCached(), 640u + 1600u);
}

TEST(WorkerPool, ACallerFindingThePoolBusyRunsItsSlicesItself) {
    struct Gate {
        std::atomic<bool> entered{false};
        std::atomic<bool> open{false};
    } gate;
    WorkerPool pool(2);
    std::thread holder([&] {
        pool.run(
            1,
            [](void* context, uint32_t, uint32_t) {
                auto& g = *static_cast<Gate*>(context);
                g.entered = true;
                while (!g.open)
                    std::this_thread::yield();
            },
            &gate);
    });
    while (!gate.entered)
        std::this_thread::yield();

    std::vector<std::pair<uint32_t, uint32_t>> slices;  // (slice, thread index), in the order they ran
    pool.run(
        3,
        [](void* context, uint32_t slice, uint32_t threadIndex) {
            static_cast<decltype(slices)*>(context)->emplace_back(slice, threadIndex);
        },
        &slices);
    gate.open = true;
    holder.join();
    using Slice = std::pair<uint32_t, uint32_t>;
    EXPECT_THAT(slices, ElementsAre(Slice{0, 0}, Slice{1, 0}, Slice{2, 0}));
}

}  // namespace TW_FILE_LOCAL
}  // namespace Tw::Host::Standalone

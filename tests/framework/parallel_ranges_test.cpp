#include "framework/parallel_ranges.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <new>
#include <set>
#include <stdexcept>
#include <thread>
#include <vector>

#include "framework/thread_start.h"

// Whatever the count, every index is worked on exactly once, in ranges that never overlap, and
// a table too small for a second thread stays on the caller's.
TEST(ParallelRanges, EveryIndexOnceAndSmallTablesStayOnTheCallersThread) {
    for (size_t count : {size_t{0}, size_t{1}, kMinRowsPerRange - 1, kMinRowsPerRange,
                         2 * kMinRowsPerRange + 1, size_t{123457}}) {
        SCOPED_TRACE(count);
        std::vector<std::atomic<int>> seen(count);
        std::atomic<size_t> ranges{0};
        std::atomic<bool> elsewhere{false};
        const std::thread::id caller = std::this_thread::get_id();
        ZebForRanges(count, [&](size_t begin, size_t end) {
            EXPECT_LT(begin, end);
            EXPECT_LE(end, count);
            ++ranges;
            if (std::this_thread::get_id() != caller) elsewhere = true;
            for (size_t i = begin; i < end; ++i) ++seen[i];
        });
        for (size_t i = 0; i < count; ++i) ASSERT_EQ(seen[i], 1) << "index " << i;
        if (count < 2 * kMinRowsPerRange) {
            EXPECT_EQ(ranges, count == 0 ? 0u : 1u);
            EXPECT_FALSE(elsewhere);
        }
    }
}

// A failure in any range reaches the caller, once every range has ended.
TEST(ParallelRanges, AFailureInAnyRangeIsThrownToTheCaller) {
    const size_t count = 4 * kMinRowsPerRange;
    for (size_t failing : {size_t{0}, count - 1}) {
        SCOPED_TRACE(failing);
        std::atomic<size_t> done{0};
        EXPECT_THROW(ZebForRanges(count,
                                  [&](size_t begin, size_t end) {
                                      for (size_t i = begin; i < end; ++i) {
                                          if (i == failing) throw std::runtime_error("cell");
                                          ++done;
                                      }
                                  }),
                     std::runtime_error);
        EXPECT_LT(done, count);
    }
}

// Where no thread can be had, every range is done on the caller's thread: each index still once,
// and a failure still reaches the caller.
TEST(ParallelRanges, WithoutThreadsEveryRangeRunsOnTheCallersThread) {
    const ZebRefusedThreads refused;
    const size_t count = 4 * kMinRowsPerRange;
    std::vector<int> seen(count);
    const std::thread::id caller = std::this_thread::get_id();
    bool elsewhere = false;
    ZebForRanges(count, [&](size_t begin, size_t end) {
        elsewhere = elsewhere || std::this_thread::get_id() != caller;
        for (size_t i = begin; i < end; ++i) ++seen[i];
    });
    EXPECT_FALSE(elsewhere);
    EXPECT_EQ(std::count(seen.begin(), seen.end(), 1), static_cast<long>(count));
    EXPECT_THROW(ZebForRanges(count,
                              [&](size_t begin, size_t) {
                                  if (begin > 0) throw std::bad_alloc();
                              }),
                 std::bad_alloc);
}

#include "framework/hand_off.h"

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <stdexcept>
#include <thread>
#include <vector>

// Items arrive whole and in order, however the two threads meet, and the giver never gets more
// than the capacity ahead of the taker.
TEST(HandOff, ItemsArriveInOrderAndTheGiverWaitsForRoom) {
    ZebHandOff<std::vector<int>> queue(2);
    std::atomic<int> given{0};
    std::jthread giver([&] {
        for (int i = 0; i < 1000; ++i) {
            EXPECT_TRUE(queue.Give(std::vector<int>(3, i)));
            ++given;
        }
        queue.Close();
    });
    while (given < 2) std::this_thread::yield();
    std::this_thread::sleep_for(std::chrono::milliseconds(20));
    EXPECT_EQ(given, 2);  // the third waits for room
    int expected = 0;
    while (std::optional<std::vector<int>> item = queue.Take()) {
        EXPECT_EQ(*item, std::vector<int>(3, expected));
        ++expected;
    }
    EXPECT_EQ(expected, 1000);
    EXPECT_FALSE(queue.Take());  // and nothing more once closed
    EXPECT_EQ(queue.Error(), nullptr);
}

// A giver that fails closes with its error: what it gave before still arrives, then nothing, and
// a taker already waiting wakes up.
TEST(HandOff, ClosingWithAnErrorHandsOverWhatWasGivenFirst) {
    ZebHandOff<int> queue(4);
    EXPECT_TRUE(queue.Give(1));
    EXPECT_TRUE(queue.Give(2));
    queue.Close(std::make_exception_ptr(std::runtime_error("disk full")));
    EXPECT_EQ(queue.Take(), 1);
    EXPECT_EQ(queue.Take(), 2);
    EXPECT_FALSE(queue.Take());
    EXPECT_THROW(std::rethrow_exception(queue.Error()), std::runtime_error);

    ZebHandOff<int> waited(1);
    std::optional<int> taken = 7;
    std::jthread taker([&] { taken = waited.Take(); });
    std::this_thread::sleep_for(std::chrono::milliseconds(20));
    waited.Close(std::make_exception_ptr(std::bad_alloc()));
    taker.join();
    EXPECT_FALSE(taken);
    EXPECT_THROW(std::rethrow_exception(waited.Error()), std::bad_alloc);
}

// A taker that fails lets go: the giver waiting for room is told at once, every later give fails
// and what waited is dropped, so neither side waits for ever.
TEST(HandOff, ATakerThatLetsGoReleasesTheGiver) {
    ZebHandOff<int> queue(1);
    EXPECT_TRUE(queue.Give(1));
    std::atomic<int> answer{-1};
    std::jthread giver([&] { answer = queue.Give(2) ? 1 : 0; });
    std::this_thread::sleep_for(std::chrono::milliseconds(20));
    EXPECT_EQ(answer, -1);  // waiting for room
    queue.LetGo();
    giver.join();
    EXPECT_EQ(answer, 0);
    EXPECT_FALSE(queue.Give(3));
    EXPECT_FALSE(queue.Take());
}

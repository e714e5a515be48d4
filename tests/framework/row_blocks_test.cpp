#include "framework/row_blocks.h"

#include <gtest/gtest.h>
#include <sys/mman.h>

#include <atomic>
#include <cstring>
#include <mutex>
#include <new>
#include <set>
#include <thread>
#include <vector>

namespace {
// A chunk source over the system's that counts the chunks it made and got back, and can be told
// to fail as a mapping without memory does.
struct CountingSource {
    static inline std::mutex mutex;
    static inline std::set<void*> live;
    static inline size_t made = 0;
    static inline size_t returned = 0;
    static inline std::atomic<bool> failing{false};

    static void* Map(size_t bytes) {
        if (failing) return nullptr;
        void* memory =
            ::mmap(nullptr, bytes, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
        if (memory == MAP_FAILED) return nullptr;
        std::lock_guard lock(mutex);
        live.insert(memory);
        ++made;
        return memory;
    }
    static void Unmap(void* chunk, size_t bytes) {
        {
            std::lock_guard lock(mutex);
            returned += live.erase(chunk);
        }
        ::munmap(chunk, bytes);
    }
};

class RowBlocksTest : public ::testing::Test {
protected:
    void SetUp() override {
        CountingSource::made = CountingSource::returned = 0;
        CountingSource::failing = false;
        previous = zeb_row_blocks::SetChunkSource(&kCounting);
    }
    void TearDown() override { zeb_row_blocks::SetChunkSource(previous); }

    static constexpr zeb_row_blocks::ChunkSource kCounting{&CountingSource::Map,
                                                           &CountingSource::Unmap};
    const zeb_row_blocks::ChunkSource* previous = nullptr;
};

void Fill(void* block, size_t bytes, unsigned char value) { std::memset(block, value, bytes); }
bool Holds(const void* block, size_t bytes, unsigned char value) {
    const auto* p = static_cast<const unsigned char*>(block);
    for (size_t i = 0; i < bytes; ++i)
        if (p[i] != value) return false;
    return true;
}
}  // namespace

// Blocks cut on a thread that has ended, freed on another: each chunk goes back to the system
// when its last block is freed, not before, and blocks stay intact until then.
TEST_F(RowBlocksTest, AChunkGoesBackWithItsLastBlockFromAnyThread) {
    std::vector<void*> blocks;
    std::thread([&] {
        for (int i = 0; i < 20000; ++i) {
            blocks.push_back(zeb_row_blocks::Allocate(40));
            Fill(blocks.back(), 40, static_cast<unsigned char>(i));
        }
    }).join();
    if (!zeb_row_blocks::CutsFromChunks()) {
        EXPECT_EQ(CountingSource::made, 0u);  // one allocation per block instead
    } else {
        EXPECT_GE(CountingSource::made, 2u);
        EXPECT_EQ(CountingSource::returned, 0u);
    }
    for (size_t i = 0; i + 1 < blocks.size(); ++i) {
        ASSERT_TRUE(Holds(blocks[i], 40, static_cast<unsigned char>(i))) << "block " << i;
        zeb_row_blocks::Free(blocks[i]);
    }
    if (zeb_row_blocks::CutsFromChunks()) {
        EXPECT_EQ(CountingSource::returned, CountingSource::made - 1);
    }
    EXPECT_TRUE(Holds(blocks.back(), 40, static_cast<unsigned char>(blocks.size() - 1)));
    zeb_row_blocks::Free(blocks.back());
    EXPECT_EQ(CountingSource::returned, CountingSource::made);
    zeb_row_blocks::Free(nullptr);
}

// Without memory for a new chunk, a block is refused with std::bad_alloc; blocks cut before are
// untouched, a block too large for a chunk is still had, and cutting goes on once memory is back.
TEST_F(RowBlocksTest, NoMemoryForAChunkRefusesTheBlockAndSpoilsNothing) {
    std::thread([&] {
        void* before = zeb_row_blocks::Allocate(100);
        Fill(before, 100, 0xAB);
        CountingSource::failing = true;
        std::vector<void*> more;
        bool refused = false;
        try {
            for (int i = 0; i < 10000; ++i) more.push_back(zeb_row_blocks::Allocate(100));
        } catch (const std::bad_alloc&) {
            refused = true;
        }
        EXPECT_EQ(refused, zeb_row_blocks::CutsFromChunks());
        void* large = zeb_row_blocks::Allocate(1 << 20);
        Fill(large, 1 << 20, 0xCD);
        zeb_row_blocks::Free(large);
        CountingSource::failing = false;
        void* after = zeb_row_blocks::Allocate(100);
        Fill(after, 100, 0xEF);
        EXPECT_TRUE(Holds(before, 100, 0xAB));
        for (void* block : more) zeb_row_blocks::Free(block);
        zeb_row_blocks::Free(before);
        zeb_row_blocks::Free(after);
    }).join();
    EXPECT_EQ(CountingSource::returned, CountingSource::made);
}

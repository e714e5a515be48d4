#include "framework/row_blocks.h"

#include <sys/mman.h>

#include <atomic>
#include <cstdint>
#include <new>

#if defined(__SANITIZE_ADDRESS__)
#define ZEB_ROW_BLOCKS_ONE_BY_ONE 1
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
#define ZEB_ROW_BLOCKS_ONE_BY_ONE 1
#endif
#endif

namespace zeb_row_blocks {
namespace {
#ifdef ZEB_ROW_BLOCKS_ONE_BY_ONE
// Under the address sanitizer every block is an allocation of its own, so that it checks each
// block's bounds and finds blocks never freed.
constexpr bool kOneByOne = true;
#else
constexpr bool kOneByOne = false;
#endif

// Small enough that a few rows kept alive hold little, large enough that chunks are rare.
constexpr size_t kChunkBytes = 256 * 1024;
// Larger blocks are allocated one by one.
constexpr size_t kLargestCut = kChunkBytes / 8;
// While a thread cuts blocks from a chunk, the chunk's count holds this much more than its
// blocks, so that no free can take it to 0; the thread gives back what it did not cut when it
// moves on. No block count reaches it.
constexpr uint64_t kHeld = uint64_t(1) << 62;

struct Chunk {
    std::atomic<uint64_t> live;
};

// Every block starts with the chunk it was cut from; null for a block of its own.
struct alignas(8) Header {
    Chunk* chunk;
};

// Blocks follow the chunk's count, each starting with its header.
static_assert(sizeof(Chunk) % alignof(Header) == 0);

void* MapChunk(size_t bytes) {
    // The chunk is filled right away: its pages are made in one call rather than one fault each.
    void* memory = ::mmap(nullptr, bytes, PROT_READ | PROT_WRITE,
                          MAP_PRIVATE | MAP_ANONYMOUS | MAP_POPULATE, -1, 0);
    return memory == MAP_FAILED ? nullptr : memory;
}
void UnmapChunk(void* chunk, size_t bytes) { ::munmap(chunk, bytes); }

constexpr ChunkSource kSystem{&MapChunk, &UnmapChunk};
std::atomic<const ChunkSource*> g_source{&kSystem};

void Release(Chunk* chunk) noexcept { g_source.load()->unmap(chunk, kChunkBytes); }

void Drop(Chunk* chunk, uint64_t count) noexcept {
    if (chunk->live.fetch_sub(count, std::memory_order_acq_rel) == count) Release(chunk);
}

// The chunk this thread cuts from, and how far.
struct Cutter {
    Chunk* chunk = nullptr;
    char* next = nullptr;
    char* end = nullptr;
    uint64_t cut = 0;

    ~Cutter() { Retire(); }
    void Retire() noexcept {
        if (chunk) Drop(chunk, kHeld - cut);
        chunk = nullptr;
        next = end = nullptr;
        cut = 0;
    }
    void Start() {
        void* memory = g_source.load()->map(kChunkBytes);
        if (!memory) throw std::bad_alloc();
        Retire();
        chunk = new (memory) Chunk{{kHeld}};
        next = static_cast<char*>(memory) + sizeof(Chunk);
        end = static_cast<char*>(memory) + kChunkBytes;
    }
};
thread_local Cutter t_cutter;

size_t RoundUp(size_t bytes) {
    return (bytes + alignof(Header) - 1) / alignof(Header) * alignof(Header);
}
}  // namespace

void* Allocate(size_t bytes) {
    const size_t total = sizeof(Header) + RoundUp(bytes);
    if (kOneByOne || total > kLargestCut) {
        auto* header = static_cast<Header*>(::operator new(total));
        header->chunk = nullptr;
        return header + 1;
    }
    Cutter& cutter = t_cutter;
    if (static_cast<size_t>(cutter.end - cutter.next) < total) cutter.Start();
    auto* header = reinterpret_cast<Header*>(cutter.next);
    header->chunk = cutter.chunk;
    cutter.next += total;
    ++cutter.cut;
    return header + 1;
}

const ChunkSource* SetChunkSource(const ChunkSource* source) {
    return g_source.exchange(source ? source : &kSystem);
}

bool CutsFromChunks() { return !kOneByOne; }

void Free(void* block) noexcept {
    if (!block) return;
    Header* header = static_cast<Header*>(block) - 1;
    if (header->chunk)
        Drop(header->chunk, 1);
    else
        ::operator delete(header);
}
}  // namespace zeb_row_blocks

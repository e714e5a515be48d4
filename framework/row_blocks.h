#pragma once

#include <cstddef>

#include "framework/vantor_export.h"

// Where the blocks of table rows live. A table of hundreds of thousands of rows would otherwise
// cost as many calls to the general allocator to build and as many again to free; here a block
// is cut from a chunk of its thread, and a chunk goes back to the system when its last block is
// freed, from whichever thread.
namespace zeb_row_blocks {
// A block of `bytes`, aligned for uint32_t and wchar_t; std::bad_alloc when there is no memory.
VANTOR_FW_API void* Allocate(size_t bytes);
// `block` from Allocate, or null.
VANTOR_FW_API void Free(void* block) noexcept;

// Where chunks come from and go back to: the system's anonymous mappings unless a test puts
// another source in (`map` gives null where a mapping fails). `source` lives as long as it is
// in use, or any chunk it made; null puts the system's back. Returns the previous one.
struct ChunkSource {
    void* (*map)(size_t bytes);
    void (*unmap)(void* chunk, size_t bytes);
};
VANTOR_FW_API const ChunkSource* SetChunkSource(const ChunkSource* source);
// False where every block is an allocation of its own (under the address sanitizer).
VANTOR_FW_API bool CutsFromChunks();
}  // namespace zeb_row_blocks

#pragma once

#include <cstddef>

// Where the blocks of table rows live. A table of hundreds of thousands of rows would otherwise
// cost as many calls to the general allocator to build and as many again to free; here a block
// is cut from a chunk of its thread, and a chunk goes back to the system when its last block is
// freed, from whichever thread.
namespace zeb_row_blocks {
// A block of `bytes`, aligned for uint32_t and wchar_t; std::bad_alloc when there is no memory.
void* Allocate(size_t bytes);
// `block` from Allocate, or null.
void Free(void* block) noexcept;
}  // namespace zeb_row_blocks

#pragma once

#include <cstddef>
#include <functional>

#include "framework/vantor_export.h"

// Work on the rows of a large table, split over the processors: [0, count) is cut into ranges
// of at least kMinRowsPerRange rows, at most one per processor and never more than
// kMaxRanges, and `work(begin, end)` runs for each at once, the first on the calling thread and
// each other on a thread of its own. A smaller table is done in one call here, where a thread
// would cost more than it saves. A range must touch nothing another range touches. An exception
// from a range is thrown again here once every range has ended.
inline constexpr size_t kMinRowsPerRange = 10000;
inline constexpr size_t kMaxRanges = 4;
VANTOR_FW_API void ZebForRanges(size_t count,
                                const std::function<void(size_t begin, size_t end)>& work);

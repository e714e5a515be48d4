#include "framework/parallel_ranges.h"

#include <algorithm>
#include <exception>
#include <thread>
#include <vector>

#include "framework/thread_start.h"

void ZebForRanges(size_t count, const std::function<void(size_t begin, size_t end)>& work) {
    const size_t processors = std::max(1u, std::thread::hardware_concurrency());
    const size_t ranges =
        std::min({processors, kMaxRanges, std::max<size_t>(1, count / kMinRowsPerRange)});
    if (ranges <= 1) {
        if (count > 0) work(0, count);
        return;
    }
    std::vector<std::exception_ptr> errors(ranges);
    const auto run = [&](size_t range) {
        try {
            work(count * range / ranges, count * (range + 1) / ranges);
        } catch (...) {
            errors[range] = std::current_exception();
        }
    };
    // Room for every thread first, so that no thread is left running when a later one fails.
    std::vector<std::jthread> threads;
    threads.reserve(ranges - 1);
    for (size_t range = 1; range < ranges; ++range) {
        try {
            threads.push_back(ZebStartThread([&run, range] { run(range); }));
        } catch (...) {
            run(range);  // no thread to be had (or no memory for one): done here instead
        }
    }
    run(0);
    threads.clear();  // joins them
    for (const std::exception_ptr& error : errors)
        if (error) std::rethrow_exception(error);
}

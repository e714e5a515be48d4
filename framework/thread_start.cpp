#include "framework/thread_start.h"

#include <atomic>
#include <cerrno>
#include <system_error>

namespace {
std::atomic<int> g_refusals{0};
}  // namespace

std::jthread ZebStartThread(std::function<void()> work) {
    if (g_refusals.load(std::memory_order_relaxed) > 0)
        throw std::system_error(EAGAIN, std::generic_category(), "no thread to be had");
    return std::jthread(std::move(work));
}

ZebRefusedThreads::ZebRefusedThreads() { ++g_refusals; }
ZebRefusedThreads::~ZebRefusedThreads() { --g_refusals; }

#pragma once

#include <functional>
#include <thread>

#include "framework/vantor_export.h"

// Every thread of the framework starts here. Where none can be had, the start throws as
// std::thread does and the caller does the work itself; ZebRefusedThreads makes every start
// fail for a while, so that those paths can be tried.
VANTOR_FW_API std::jthread ZebStartThread(std::function<void()> work);

// While one lives, ZebStartThread throws std::system_error (resource unavailable) on every thread.
class VANTOR_FW_API ZebRefusedThreads {
public:
    ZebRefusedThreads();
    ~ZebRefusedThreads();
    ZebRefusedThreads(const ZebRefusedThreads&) = delete;
    ZebRefusedThreads& operator=(const ZebRefusedThreads&) = delete;
};

#pragma once

#include <cstdio>
#include <exception>

// Runs the body of an exported function so that nothing thrown inside the module crosses into
// the host: a failure is reported on standard error, and the function then returns as one that
// did nothing would. Each entry point leaves the host's data in that state itself.
template <class Body>
bool RunGuarded(const char* entryPoint, Body&& body) noexcept {
    try {
        body();
        return true;
    } catch (const std::exception& e) {
        std::fprintf(stderr, "vantor: %s failed: %s\n", entryPoint, e.what());
    } catch (...) {
        std::fprintf(stderr, "vantor: %s failed\n", entryPoint);
    }
    return false;
}

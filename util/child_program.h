#pragma once

#include <sys/types.h>

#include <cstdint>
#include <string>
#include <vector>

// Programs that parse files the process cannot trust its own libraries with run apart, under
// resource limits, and send their answer on a pipe: a crash or a limit ends the child, never the
// caller. Started by fork and exec, with nothing but async-signal-safe calls in between, so a
// process that has threads may start them too.

struct ChildLimits {
    uint64_t addressSpace = 0;  // bytes; 0 leaves it open
    uint64_t seconds = 0;       // processor time; 0 leaves it open
};

// Starts argv[0] with `argv`, its standard input and error on /dev/null and its standard output
// on a pipe whose read end is put in `answer`. -1 when it cannot be started (then `answer` is
// not open); a program that cannot be executed exits with 127.
pid_t StartChildProgram(const std::vector<std::string>& argv, const ChildLimits& limits,
                        int& answer);

// Waits for the child; its status as waitpid gives it, or -1 when it cannot be waited for.
int WaitForChildProgram(pid_t pid);

#pragma once

#include <sys/wait.h>

#include <cstdio>
#include <filesystem>
#include <sstream>
#include <string>
#include <vector>

#include "tests/support/file_bytes.h"

// What a run of the built vantor-rules gave.
struct HostRun {
    int status = -1;
    std::string out;
    std::string err;
};

// Runs the built vantor-rules with `args` in English and the build's resources, its standard
// error kept in `errFile`; `prefix` runs in the same shell before it (limits, traps, env).
inline HostRun RunHost(const std::string& args, const std::filesystem::path& errFile,
                       const std::string& prefix = "") {
    const std::string command = prefix +
                                " env VANTOR_RES_DIR=" VANTOR_BUILD_DIR
                                "/share/vantor/res LANG=en_US.UTF-8 "
                                "LC_ALL=C.UTF-8 " VANTOR_BUILD_DIR "/bin/vantor-rules " +
                                args + " 2>" + errFile.string();
    HostRun run;
    FILE* pipe = popen(command.c_str(), "r");
    char buffer[4096];
    for (size_t n; (n = fread(buffer, 1, sizeof buffer, pipe)) > 0;) run.out.append(buffer, n);
    const int status = pclose(pipe);
    run.status = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    run.err = FileBytes(errFile);
    return run;
}

// The lines of a program's output.
inline std::vector<std::string> Lines(const std::string& text) {
    std::vector<std::string> lines;
    std::istringstream in(text);
    for (std::string line; std::getline(in, line);) lines.push_back(line);
    return lines;
}

#pragma once

#include <cstdio>
#include <string>
#include <vector>

// One command of vantor-rules or vantor-tools. Each command lives in its own cmd_*.cpp and
// registers itself.
struct HostCommand {
    std::string name;   // first word on the command line
    std::string usage;  // arguments, as shown by --help
    std::string help;   // one or more lines of explanation
    // Arguments after the command word. Returns the exit status: 0 done, 1 refused, 2 bad input.
    int (*run)(const std::vector<std::string>& args);
};

void RegisterHostCommand(const HostCommand& command);
const std::vector<HostCommand>& HostCommands();
// Null when no command of this program has that name.
const HostCommand* FindHostCommand(const std::string& name);
// Every command with its usage and help, in name order, as --help shows them.
void PrintHostCommands(std::FILE* out);

#define VANTOR_HOST_COMMAND(tag, ...) \
    static const bool tag##_registered = (RegisterHostCommand(HostCommand{__VA_ARGS__}), true)

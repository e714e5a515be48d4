#include "host/host_command.h"

#include <algorithm>

namespace {
std::vector<HostCommand>& Registry() {
    static std::vector<HostCommand> commands;
    return commands;
}
}  // namespace

void RegisterHostCommand(const HostCommand& command) {
    auto& commands = Registry();
    commands.push_back(command);
    std::sort(commands.begin(), commands.end(),
              [](const HostCommand& a, const HostCommand& b) { return a.name < b.name; });
}

const std::vector<HostCommand>& HostCommands() { return Registry(); }

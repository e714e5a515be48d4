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

const HostCommand* FindHostCommand(const std::string& name) {
    for (const HostCommand& c : Registry())
        if (c.name == name) return &c;
    return nullptr;
}

void PrintHostCommands(std::FILE* out) {
    for (const HostCommand& c : Registry()) {
        std::fprintf(out, "  %s %s\n", c.name.c_str(), c.usage.c_str());
        size_t start = 0;
        while (start < c.help.size()) {
            size_t end = c.help.find('\n', start);
            if (end == std::string::npos) end = c.help.size();
            std::fprintf(out, "      %s\n", c.help.substr(start, end - start).c_str());
            start = end + 1;
        }
    }
}

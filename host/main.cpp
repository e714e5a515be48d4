// vantor-rules: the host that loads the assembly rule module as the framework does.
#include <cstdio>
#include <string>
#include <vector>

#include "host/host_command.h"

namespace {
void PrintHelp(std::FILE* out) {
    std::fprintf(out, "usage: vantor-rules COMMAND [ARGS...]\n\ncommands:\n");
    for (const HostCommand& c : HostCommands()) {
        std::fprintf(out, "  %s %s\n", c.name.c_str(), c.usage.c_str());
        std::string help = c.help;
        size_t start = 0;
        while (start < help.size()) {
            size_t end = help.find('\n', start);
            if (end == std::string::npos) end = help.size();
            std::fprintf(out, "      %s\n", help.substr(start, end - start).c_str());
            start = end + 1;
        }
    }
    std::fprintf(out,
                 "\nThe module ZEBAssemblyRules.so is loaded from --module-dir DIR, else from the folder\n"
                 "named by VANTOR_MODULE_DIR, else from the installation's library folder; a\n"
                 "ZEBDatabaseu.so beside it is loaded before any rule. Settings files are written through a\n"
                 "temporary file, so a failed write leaves an existing file as it was.\n"
                 "Exit status: 0 done, 1 module not loadable or file not written, 2 bad input.\n");
}
}  // namespace

int main(int argc, char** argv) {
    if (argc < 2) {
        PrintHelp(stderr);
        return 2;
    }
    const std::string word = argv[1];
    if (word == "--help" || word == "-h" || word == "help") {
        PrintHelp(stdout);
        return 0;
    }
    for (const HostCommand& c : HostCommands()) {
        if (c.name == word) return c.run(std::vector<std::string>(argv + 2, argv + argc));
    }
    std::fprintf(stderr, "vantor-rules: unknown command '%s' (see vantor-rules --help)\n", word.c_str());
    return 2;
}

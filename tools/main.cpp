// vantor-tools: the commands that use the module's internals directly (unit texts, the
// spreadsheet import, the controls). It links them as a program of its own and never loads the
// module, so no process holds two copies of the module's state. vantor-rules runs it for these
// commands under its own name.
#include <cstdio>
#include <string>
#include <vector>

#include "host/host_command.h"

namespace {
// The name this program was run under: vantor-tools, or vantor-rules when that runs it.
std::string ProgramName(const char* argv0) {
    if (!argv0 || !*argv0) return "vantor-tools";
    const std::string path = argv0;
    const size_t slash = path.rfind('/');
    return slash == std::string::npos ? path : path.substr(slash + 1);
}
}  // namespace

int main(int argc, char** argv) {
    const std::string program = ProgramName(argc > 0 ? argv[0] : nullptr);
    const std::string word = argc > 1 ? argv[1] : "";
    if (word == "--list-commands") {
        PrintHostCommands(stdout);
        return 0;
    }
    if (word.empty() || word == "--help" || word == "-h" || word == "help") {
        std::FILE* out = word.empty() ? stderr : stdout;
        std::fprintf(out, "usage: %s COMMAND [ARGS...]\n\ncommands:\n", program.c_str());
        PrintHostCommands(out);
        return word.empty() ? 2 : 0;
    }
    if (const HostCommand* command = FindHostCommand(word))
        return command->run(std::vector<std::string>(argv + 2, argv + argc));
    std::fprintf(stderr, "%s: unknown command '%s' (see %s --help)\n", program.c_str(),
                 word.c_str(), program.c_str());
    return 2;
}

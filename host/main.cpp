// vantor-rules: the host that loads the assembly rule module as the framework does.
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <filesystem>
#include <string>
#include <vector>

#include "host/host_command.h"
#include "host/settings_file.h"

extern char** environ;

namespace {
// The commands that read the module's internals (units, sheet, gallery) live in vantor-tools
// beside this program, so that this process reaches the module only through its exports.
std::string ToolsProgram() {
    std::error_code ec;
    const std::filesystem::path self = std::filesystem::read_symlink("/proc/self/exe", ec);
    return ec ? std::string() : (self.parent_path() / "vantor-tools").string();
}

// Runs vantor-tools under this program's name, so that its messages and help speak of
// vantor-rules. Returns its exit status, or -1 when it cannot be started.
int RunTools(const std::vector<std::string>& words) {
    const std::string program = ToolsProgram();
    if (program.empty() || ::access(program.c_str(), X_OK) != 0) return -1;
    std::vector<char*> argv{const_cast<char*>("vantor-rules")};
    for (const std::string& word : words) argv.push_back(const_cast<char*>(word.c_str()));
    argv.push_back(nullptr);
    std::fflush(nullptr);
    pid_t child = 0;
    if (posix_spawn(&child, program.c_str(), nullptr, nullptr, argv.data(), environ) != 0)
        return -1;
    int status = 0;
    if (::waitpid(child, &status, 0) != child) return -1;
    return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
}

void PrintHelp(std::FILE* out) {
    std::fprintf(out, "usage: vantor-rules COMMAND [ARGS...]\n\ncommands:\n");
    PrintHostCommands(out);
    if (out == stdout) {
        std::fprintf(
            out, "\ncommands run by vantor-tools, which uses the module's internals directly:\n");
        std::fflush(out);
        RunTools({"--list-commands"});
    }
    std::fprintf(
        out,
        "\nThe module ZEBAssemblyRules.so is loaded from --module-dir DIR, else from the folder\n"
        "named by VANTOR_MODULE_DIR, else from the installation's library folder; a\n"
        "ZEBDatabaseu.so beside it is loaded before any rule. Settings files are written through "
        "a\n"
        "temporary file, so a failed write leaves an existing file as it was.\n"
        "Exit status: 0 done, 1 module not loadable or file not written, 2 bad input.\n");
}
}  // namespace

int main(int argc, char** argv) {
    if (argc < 2) {
        // A person starting the program on a desktop gets the editor.
        if (HasDisplay())
            if (const HostCommand* edit = FindHostCommand("edit")) return edit->run({});
        PrintHelp(stderr);
        return 2;
    }
    const std::string word = argv[1];
    if (word == "--help" || word == "-h" || word == "help") {
        PrintHelp(stdout);
        return 0;
    }
    const std::vector<std::string> words(argv + 1, argv + argc);
    if (const HostCommand* command = FindHostCommand(word))
        return command->run(std::vector<std::string>(words.begin() + 1, words.end()));
    const int status = RunTools(words);
    if (status >= 0) return status;
    std::fprintf(stderr, "vantor-rules: unknown command '%s' (see vantor-rules --help)\n",
                 word.c_str());
    return 2;
}

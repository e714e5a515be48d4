#include "util/child_program.h"

#include <fcntl.h>
#include <signal.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>

pid_t StartChildProgram(const std::vector<std::string>& argv, const ChildLimits& limits,
                        int& answer) {
    // Everything the child needs is made before fork: between fork and exec a threaded process
    // may only make async-signal-safe calls.
    std::vector<const char*> args;
    for (const std::string& arg : argv) args.push_back(arg.c_str());
    args.push_back(nullptr);
    const rlimit addressSpace{limits.addressSpace, limits.addressSpace};
    const rlimit seconds{limits.seconds, limits.seconds + 1};
    const rlimit noCore{0, 0};
    struct sigaction defaultAction {};
    defaultAction.sa_handler = SIG_DFL;
    int pipeEnds[2];
    if (argv.empty() || pipe2(pipeEnds, O_CLOEXEC) != 0) return -1;
    // A larger pipe lets the child run ahead of the reader with fewer switches; the default
    // serves when the system refuses.
    fcntl(pipeEnds[0], F_SETPIPE_SZ, 1 << 20);
    const pid_t pid = fork();
    if (pid == 0) {
        // Moved above the standard descriptors first, so that dup2 always makes a copy without
        // close-on-exec even when the parent had one of them closed.
        const int out = fcntl(pipeEnds[1], F_DUPFD_CLOEXEC, 3);
        const int nothing = open("/dev/null", O_RDWR | O_CLOEXEC);
        const int moved = nothing < 0 ? -1 : fcntl(nothing, F_DUPFD_CLOEXEC, 3);
        if (out < 0 || moved < 0 || dup2(moved, 0) < 0 || dup2(out, 1) < 0 || dup2(moved, 2) < 0)
            _exit(127);
        if (close_range(3, ~0u, 0) != 0)
            for (int fd = 3; fd < 65536; ++fd) close(fd);
        sigset_t none;
        sigemptyset(&none);
        sigprocmask(SIG_SETMASK, &none, nullptr);
        sigaction(SIGPIPE, &defaultAction, nullptr);
        if ((limits.addressSpace != 0 && setrlimit(RLIMIT_AS, &addressSpace) != 0) ||
            (limits.seconds != 0 && setrlimit(RLIMIT_CPU, &seconds) != 0) ||
            setrlimit(RLIMIT_CORE, &noCore) != 0)
            _exit(127);
        execv(args[0], const_cast<char* const*>(args.data()));
        _exit(127);
    }
    close(pipeEnds[1]);
    if (pid < 0) {
        close(pipeEnds[0]);
        return -1;
    }
    answer = pipeEnds[0];
    return pid;
}

int WaitForChildProgram(pid_t pid) {
    int status = 0;
    while (waitpid(pid, &status, 0) < 0)
        if (errno != EINTR) return -1;
    return status;
}

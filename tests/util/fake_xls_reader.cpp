// Stands in for vantor-xls-reader in tests: answers as VANTOR_FAKE_XLS_MODE says, well or badly,
// with the answer writer of the real program.
#include <dirent.h>
#include <signal.h>
#include <sys/resource.h>
#include <unistd.h>

#include <cstdlib>
#include <string>
#include <string_view>

#include "util/biff_parser.h"

namespace {
void WriteRaw(std::string_view bytes) {
    while (!bytes.empty()) {
        const ssize_t n = write(1, bytes.data(), bytes.size());
        if (n <= 0) std::_Exit(1);
        bytes.remove_prefix(static_cast<size_t>(n));
    }
}

std::string LimitText(int resource) {
    rlimit limit{};
    getrlimit(resource, &limit);
    return limit.rlim_cur == RLIM_INFINITY ? "unlimited" : std::to_string(limit.rlim_cur);
}

// The descriptors open in this process, without the one listing them.
std::string OpenDescriptors() {
    std::string list;
    DIR* folder = opendir("/proc/self/fd");
    if (!folder) return "?";
    while (const dirent* entry = readdir(folder)) {
        if (entry->d_name[0] == '.' || std::atoi(entry->d_name) == dirfd(folder)) continue;
        list += std::string(list.empty() ? "" : ",") + entry->d_name;
    }
    closedir(folder);
    return list;
}

std::string LinkTarget(const char* link) {
    char target[256] = {};
    const ssize_t n = readlink(link, target, sizeof target - 1);
    return n > 0 ? std::string(target, static_cast<size_t>(n)) : std::string();
}
}  // namespace

int main() {
    const char* modeText = std::getenv("VANTOR_FAKE_XLS_MODE");
    const std::string mode = modeText ? modeText : "";
    CBiffAnswerWriter writer(1);
    SheetExtent extent;
    extent.usedRows = 2;
    if (mode == "bad-magic") {
        WriteRaw("XXXX");
        return 0;
    }
    if (mode == "limits") {
        const std::string facts[] = {LimitText(RLIMIT_AS),          LimitText(RLIMIT_CPU),
                                     LimitText(RLIMIT_CORE),        OpenDescriptors(),
                                     LinkTarget("/proc/self/fd/0"), LinkTarget("/proc/self/fd/2")};
        uint32_t row = 0;
        for (const std::string& fact : facts) writer.Cell(0, row++, CellKind::Text, 0, fact);
        extent.usedRows = row;
        return writer.Finish(SheetReadStatus::Ok, extent) ? 0 : 1;
    }
    writer.Cell(0, 0, CellKind::Text, 0, "bolt.prt");
    writer.Cell(0, 1, CellKind::Number, 12.5, {});
    if (mode == "kill-midway") {
        writer.Flush();
        raise(SIGKILL);
    }
    if (mode == "no-end") return writer.Flush() ? 0 : 1;
    if (mode == "cut-record") {
        writer.Flush();
        WriteRaw(std::string_view("C\0\0\0\0\1\0", 7));
        return 0;
    }
    if (mode == "stray-column") writer.Cell(7, 0, CellKind::Text, 0, "not asked for");
    if (mode == "bad-kind") writer.Cell(0, 2, static_cast<CellKind>(9), 0, {});
    if (mode == "row-out-of-range") writer.Cell(0, kMaxSheetRows, CellKind::Other, 0, {});
    if (mode == "huge-text") {
        writer.Flush();
        const uint32_t length = 0xFFFFFFFFu;
        WriteRaw(std::string_view("C\0\0\0\0\2\0\0\0\2", 10));
        WriteRaw(std::string_view(reinterpret_cast<const char*>(&length), sizeof length));
        return 0;
    }
    if (!writer.Finish(SheetReadStatus::Ok, extent)) return 1;
    if (mode == "trailing") WriteRaw("E");
    if (mode == "exit-3") return 3;
    if (mode == "killed-after-answer") raise(SIGKILL);
    return 0;
}

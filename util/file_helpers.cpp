#include "util/file_helpers.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <algorithm>
#include <cctype>
#include <cerrno>
#include <climits>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <cwctype>
#include <iterator>
#include <string>

#include "app/assembly_rules_app.h"
#include "framework/case_fold.h"
#include "framework/folder_check.h"
#include "framework/text_convert.h"

namespace {
constexpr size_t kMaxPath = 2048;
// Failure codes of the property lookup, in the form the callers print.
constexpr long kInvalidProperty = 0x80070057L;
long PropertyStoreError(int error) { return static_cast<long>(0x80070000UL | (error & 0xFFFF)); }

size_t LastSeparator(const std::wstring& path) { return path.find_last_of(L"/\\"); }

// $NAME and ${NAME} replaced by the environment; nothing else is interpreted.
std::string ExpandEnvironment(const std::string& path) {
    std::string out;
    for (size_t i = 0; i < path.size(); ++i) {
        if (path[i] != '$' || i + 1 >= path.size()) {
            out += path[i];
            continue;
        }
        const bool braced = path[i + 1] == '{';
        size_t start = i + (braced ? 2 : 1), end = start;
        while (end < path.size() &&
               (std::isalnum(static_cast<unsigned char>(path[end])) || path[end] == '_'))
            ++end;
        if (end == start || (braced && (end >= path.size() || path[end] != '}'))) {
            out += path[i];
            continue;
        }
        const char* value = std::getenv(path.substr(start, end - start).c_str());
        out += value ? value : "";
        i = braced ? end : end - 1;
    }
    return out;
}

bool IsCanonicalPropertyName(const std::wstring& name) {
    if (name.empty() || name.front() == L'.' || name.back() == L'.') return false;
    for (wchar_t c : name)
        if (!(std::iswalnum(c) || c == L'.' || c == L'_')) return false;
    return true;
}

// The user's own folder under /tmp when TMPDIR is not set. Anyone can create names in /tmp, so
// an existing one is used only when it is a real folder of ours that nobody else can write in;
// empty otherwise.
std::string OwnTempFolder() {
    const uid_t uid = ::geteuid();
    const std::string folder = "/tmp/vantor-" + std::to_string(uid);
    if (::mkdir(folder.c_str(), 0700) == 0)
        ::chmod(folder.c_str(), 0700);  // the umask may have taken the owner's own bits
    else if (errno != EEXIST)
        return {};
    struct stat st {};
    if (::lstat(folder.c_str(), &st) != 0 || !S_ISDIR(st.st_mode) || st.st_uid != uid ||
        (st.st_mode & (S_IWGRP | S_IWOTH)) != 0)
        return {};
    return folder;
}
}  // namespace

std::wstring GetModuleTempFolder() {
    const char* tmp = std::getenv("TMPDIR");
    std::string folder = tmp && *tmp ? tmp : OwnTempFolder();
    while (folder.size() > 1 && folder.back() == '/') folder.pop_back();
    if (folder.empty()) return {};
    folder += "/VantorTemp";
    struct stat st {};
    if (::lstat(folder.c_str(), &st) != 0 && errno == ENOENT) {
        // Everyone may write, only owners may delete, whatever the umask says.
        if (::mkdir(folder.c_str(), 01777) == 0) ::chmod(folder.c_str(), 01777);
    }
    return FromUtf8(folder);
}

bool IsFolderUsable(const std::wstring& path) { return ZebIsFolderUsable(path); }

std::wstring GetFileNameFromPath(const std::wstring& path) {
    const size_t cut = LastSeparator(path);
    return cut == std::wstring::npos ? path : path.substr(cut + 1);
}

std::wstring GetBaseFileName(const std::wstring& path) {
    const std::wstring name = GetFileNameFromPath(path);
    return name.substr(0, name.find(L'.'));
}

bool ContainsNoCase(const std::wstring& text, const std::vector<std::wstring>& array) {
    for (const std::wstring& item : array)
        if (ZebEqualsNoCase(item, text)) return true;
    return false;
}

std::wstring GetDBModuleFileName(int index) {
    CZEBAssemblyRulesApp* app = GetAssemblyRulesApp();
    if (!app || index < 0 || index >= static_cast<int>(app->m_databaseModules.size())) return {};
    return GetFileNameFromPath(*std::next(app->m_databaseModules.begin(), index));
}

void BuildImportLogPath(const std::wstring& spreadsheetPath, const std::wstring& logSuffix,
                        std::wstring& logPath) {
    const size_t cut = LastSeparator(spreadsheetPath);
    if (cut == std::wstring::npos) return;
    const std::wstring name = spreadsheetPath.substr(cut + 1);
    const size_t point = name.rfind(L'.');
    if (point == std::wstring::npos) return;
    const std::wstring folder = GetModuleTempFolder();
    // No folder, no log: "/" + name would put it at the root.
    logPath = folder.empty() ? std::wstring() : folder + L"/" + name.substr(0, point) + logSuffix;
}

bool WriteImportLogPass(const std::wstring& logPath, bool firstPass, const std::wstring& heading,
                        const std::vector<std::wstring>& entries) {
    const std::string path = ToUtf8(logPath);
    const size_t cut = path.find_last_of('/');
    const std::string folder =
        cut == std::string::npos ? "." : (cut == 0 ? "/" : path.substr(0, cut));
    const std::string name = cut == std::string::npos ? path : path.substr(cut + 1);
    if (name.empty()) return false;
    // The folder may be shared: neither it nor the log may be a link planted by someone else.
    const int dir = ::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC);
    if (dir < 0) return false;
    // No O_TRUNC: a file that turns out not to be ours must stay whole. O_NONBLOCK keeps a fifo
    // at the log's place from hanging the import.
    const int flags = O_WRONLY | O_CREAT | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY | O_CLOEXEC |
                      (firstPass ? 0 : O_APPEND);
    const int fd = ::openat(dir, name.c_str(), flags, 0600);
    ::close(dir);
    if (fd < 0) return false;
    // Someone else's log, left or planted at that name, is neither written into nor taken for
    // ours; nor is a second name of another file.
    struct stat st {};
    if (::fstat(fd, &st) != 0 || !S_ISREG(st.st_mode) || st.st_uid != ::geteuid() ||
        st.st_nlink > 1 || (firstPass && ::ftruncate(fd, 0) != 0)) {
        ::close(fd);
        return false;
    }
    std::string text = ToUtf8(heading);
    for (const std::wstring& entry : entries) text += ToUtf8(entry) + "\n";
    size_t written = 0;
    while (written < text.size()) {
        const ssize_t n = ::write(fd, text.data() + written, text.size() - written);
        if (n < 0 && errno == EINTR) continue;
        if (n <= 0) break;
        written += static_cast<size_t>(n);
    }
    ::close(fd);
    return written == text.size();
}

char* ToAnsiBuffer(const std::wstring& text) {
    const std::string utf8 = ToUtf8(text);
    const size_t size = std::max(2 * text.size() + 2, utf8.size() + 1);
    char* buffer = new char[size]();
    std::memcpy(buffer, utf8.data(), utf8.size());
    return buffer;
}

long ReadShellProperty(const std::wstring& path, const std::wstring& property,
                       std::wstring& value) {
    if (!IsCanonicalPropertyName(property)) {
        std::printf("Invalid property specified: %s\n", ToUtf8(property).c_str());
        return kInvalidProperty;
    }
    std::string expanded = ExpandEnvironment(ToUtf8(path));
    if (expanded.size() > kMaxPath) {
        std::printf("Error %lx: getting the propertystore for the item.\n",
                    PropertyStoreError(ENAMETOOLONG));
        return PropertyStoreError(ENAMETOOLONG);
    }
    if (!expanded.empty() && expanded.front() != '/') {
        char cwd[PATH_MAX];
        if (::getcwd(cwd, sizeof cwd)) expanded = std::string(cwd) + "/" + expanded;
    }
    struct stat st {};
    if (expanded.size() > kMaxPath || ::stat(expanded.c_str(), &st) != 0) {
        const long code = PropertyStoreError(expanded.size() > kMaxPath ? ENAMETOOLONG : errno);
        std::printf("Error %lx: getting the propertystore for the item.\n", code);
        return code;
    }
    const std::string attribute = "user." + ToUtf8(property);
    char buffer[4096];
    const ssize_t size = ::getxattr(expanded.c_str(), attribute.c_str(), buffer, sizeof buffer);
    if (size < 0) return PropertyStoreError(errno);
    value = FromUtf8(std::string(buffer, static_cast<size_t>(size)));
    return 0;
}

std::wstring GetPartDisplayName(const std::wstring& path, const std::wstring& name) {
    std::wstring type;
    ReadShellProperty(path, L"Vantor.PartType", type);
    if (type != L"Part") return name;
    return name.substr(0, name.find(L'.'));
}

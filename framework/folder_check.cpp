#include "framework/folder_check.h"

#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <string>

#include "framework/text_convert.h"

namespace {
bool IsAccessDenied(int error) { return error == EACCES || error == EPERM || error == EROFS; }

std::string ParentOf(const std::string& path) {
    const size_t cut = path.find_last_of("/\\");
    if (cut == std::string::npos) return ".";
    return cut == 0 ? "/" : path.substr(0, cut);
}
}  // namespace

int ZebCreateFolderWithParents(const std::wstring& widePath) {
    std::string path = ToUtf8(widePath);
    for (char& c : path)
        if (c == '\\') c = '/';
    while (path.size() > 1 && path.back() == '/') path.pop_back();
    if (path.empty()) return ENOENT;
    int last = 0;
    for (size_t pos = 1; pos <= path.size(); ++pos) {
        if (pos != path.size() && path[pos] != '/') continue;
        const std::string part = path.substr(0, pos);
        if (::mkdir(part.c_str(), 0777) == 0) {
            last = 0;
            continue;
        }
        last = errno;
        if (last == EEXIST) {
            struct stat st {};
            if (::stat(part.c_str(), &st) == 0 && !S_ISDIR(st.st_mode)) return ENOTDIR;
            continue;
        }
        if (IsAccessDenied(last)) return EACCES;
        return last;
    }
    return last;
}

bool ZebIsFolderUsable(const std::wstring& path) {
    if (path.empty()) return false;
    const std::string utf8 = ToUtf8(path);
    struct stat st {};
    if (::stat(utf8.c_str(), &st) != 0) {
        if (::access(ParentOf(utf8).c_str(), R_OK | W_OK) != 0) return false;
    }
    const int created = ZebCreateFolderWithParents(path);
    if (created == EACCES) return false;
    if (created == EEXIST) {
        const std::wstring probe = path + L"/Temp";
        const int probed = ZebCreateFolderWithParents(probe);
        if (probed == EACCES) return false;
        if (probed == 0) ::rmdir(ToUtf8(probe).c_str());
    }
    return true;
}

#include "framework/location_helper.h"

#include <dlfcn.h>

#include <cstdlib>
#include <string>

#include "framework/text_convert.h"

namespace {
std::string ParentFolder(const std::string& path) {
    const size_t cut = path.find_last_of('/');
    if (cut == std::string::npos) return ".";
    return cut == 0 ? "/" : path.substr(0, cut);
}

std::string StripTrailingSeparators(std::string path) {
    while (path.size() > 1 && path.back() == '/') path.pop_back();
    return path;
}
}  // namespace

std::wstring CLocationHelper::GetLibraryFolder() {
    Dl_info info{};
    if (dladdr(reinterpret_cast<void*>(&CLocationHelper::GetLibraryFolder), &info) == 0 ||
        !info.dli_fname)
        return L".";
    char* real = realpath(info.dli_fname, nullptr);
    std::string path = real ? real : info.dli_fname;
    std::free(real);
    return FromUtf8(ParentFolder(path));
}

std::wstring CLocationHelper::GetResourceRoot() {
    if (const char* root = std::getenv("VANTOR_RES_DIR"); root && *root)
        return FromUtf8(StripTrailingSeparators(root));
    const std::string lib = ToUtf8(GetLibraryFolder());
    const std::string prefix = ParentFolder(ParentFolder(lib));
    return FromUtf8(prefix + "/share/vantor/res");
}

std::wstring CLocationHelper::GetLocalizedResPath() {
    return GetResourceRoot() + L"/" + CLanguageUtil::GetVantorLang();
}

std::wstring CLocationHelper::GetDefaultResPath() { return GetResourceRoot() + L"/en"; }

std::wstring CLanguageUtil::GetVantorLang() {
    for (const char* name : {"LC_ALL", "LC_MESSAGES", "LANG"}) {
        const char* value = std::getenv(name);
        if (!value || !*value) continue;
        std::string locale = value;
        const size_t cut = locale.find_first_of("_.@");
        std::string lang = locale.substr(0, cut);
        if (lang.empty() || lang == "C" || lang == "POSIX") return L"en";
        for (char& c : lang) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
        return FromUtf8(lang);
    }
    return L"en";
}

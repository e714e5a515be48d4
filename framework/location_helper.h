#pragma once

#include <string>

#include "framework/vantor_export.h"

// Where the installed resources are. Folders come without a trailing separator.
class VANTOR_FW_API CLocationHelper {
public:
    // <resource root>/<user language>
    static std::wstring GetLocalizedResPath();
    // <resource root>/en
    static std::wstring GetDefaultResPath();
    // VANTOR_RES_DIR when set, else <prefix>/share/vantor/res, the prefix being two folders
    // above the folder of this library (<prefix>/lib/vantor).
    static std::wstring GetResourceRoot();
    // <prefix>/lib/vantor: the folder of this library.
    static std::wstring GetLibraryFolder();
};

class VANTOR_FW_API CLanguageUtil {
public:
    // The user's language word ("en", "de", ...) from LC_ALL, LC_MESSAGES or LANG, the first
    // that is set and not empty; "en" for the C and POSIX locales or when none is set.
    static std::wstring GetVantorLang();
};

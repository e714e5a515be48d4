#pragma once

#include <stdlib.h>

#include <filesystem>
#include <string>
#include <system_error>

// What Qt keeps for a user (dialog sizes, recent files) goes to a folder of this test process,
// removed when it ends: a test never reads what an earlier run or the user left, nor writes into
// the user's own settings. Called before the first QSettings is made; later calls do nothing.
inline void UseScratchConfiguration() {
    static const struct Folder {
        std::string path;
        Folder() {
            std::error_code ec;
            std::string pattern =
                (std::filesystem::temp_directory_path(ec) / "vantor-config-XXXXXX").string();
            if (!ec && mkdtemp(pattern.data())) path = pattern;
            if (!path.empty()) setenv("XDG_CONFIG_HOME", path.c_str(), 1);
        }
        ~Folder() {
            std::error_code ec;
            if (!path.empty()) std::filesystem::remove_all(path, ec);
        }
    } folder;
}

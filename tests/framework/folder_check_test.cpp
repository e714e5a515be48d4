#include "framework/folder_check.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>
#include <fstream>

namespace fs = std::filesystem;

namespace {
fs::path FreshFolder(const char* name) {
    const fs::path dir = fs::temp_directory_path() / name;
    fs::remove_all(dir);
    fs::create_directories(dir);
    return dir;
}
}  // namespace

TEST(FolderCheck, ExistingFolderKeepsItsContentsAndItsOwnTemp) {
    const fs::path dir = FreshFolder("zeb_folder_existing");
    std::ofstream(dir / "keep.txt") << "x";
    EXPECT_TRUE(ZebIsFolderUsable(dir.wstring()));
    EXPECT_FALSE(fs::exists(dir / "Temp"));  // the probe is removed again
    EXPECT_TRUE(fs::exists(dir / "keep.txt"));

    fs::create_directory(dir / "Temp");
    std::ofstream(dir / "Temp" / "inside.txt") << "y";
    EXPECT_TRUE(ZebIsFolderUsable(dir.wstring()));
    EXPECT_TRUE(fs::exists(dir / "Temp" / "inside.txt"));
}

TEST(FolderCheck, MissingFoldersAreCreatedWithTheirParents) {
    const fs::path dir = FreshFolder("zeb_folder_new");
    const fs::path target = dir / "a" / "b";
    // the direct parent does not exist either: not usable, nothing created
    EXPECT_FALSE(ZebIsFolderUsable(target.wstring()));
    EXPECT_FALSE(fs::exists(dir / "a"));
    EXPECT_TRUE(ZebIsFolderUsable((dir / "a").wstring()));
    EXPECT_TRUE(fs::is_directory(dir / "a"));
    EXPECT_TRUE(ZebIsFolderUsable(target.wstring()));
    EXPECT_TRUE(fs::is_directory(target));
    EXPECT_EQ(ZebCreateFolderWithParents((dir / "x\\y\\z").wstring()), 0);
    EXPECT_TRUE(fs::is_directory(dir / "x" / "y" / "z"));
    EXPECT_EQ(ZebCreateFolderWithParents((dir / "x").wstring()), EEXIST);
}

// "Unprivileged" in the name: CI runs it as a user that permissions bind.
TEST(FolderCheckUnprivileged, EmptyAndUnwritablePathsAreNotUsable) {
    EXPECT_FALSE(ZebIsFolderUsable(L""));
    if (::geteuid() == 0) GTEST_SKIP() << "permissions do not bind root";
    const fs::path dir = FreshFolder("zeb_folder_locked");
    ::chmod(dir.c_str(), 0555);
    EXPECT_FALSE(ZebIsFolderUsable((dir / "sub").wstring()));
    EXPECT_FALSE(ZebIsFolderUsable(dir.wstring()));
    ::chmod(dir.c_str(), 0755);
}

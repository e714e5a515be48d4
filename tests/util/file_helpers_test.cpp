#include "util/file_helpers.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <sstream>

#include "app/assembly_rules_app.h"

namespace fs = std::filesystem;

namespace {
class FileHelpersTest : public ::testing::Test {
protected:
    void SetUp() override {
        // One folder per test: CTest runs tests in parallel.
        tmp_ = fs::path(VANTOR_BUILD_DIR) / "test-tmp" /
               ::testing::UnitTest::GetInstance()->current_test_info()->name();
        fs::remove_all(tmp_);
        fs::create_directories(tmp_);
        setenv("TMPDIR", tmp_.c_str(), 1);
    }
    void TearDown() override { unsetenv("TMPDIR"); }
    std::string Read(const fs::path& p) {
        std::ifstream in(p);
        std::stringstream s;
        s << in.rdbuf();
        return s.str();
    }
    fs::path tmp_;
};
}  // namespace

TEST_F(FileHelpersTest, TemporaryFolderIsSharedAndLogPathsComeFromTheSheetName) {
    const std::wstring folder = GetModuleTempFolder();
    EXPECT_EQ(folder, (tmp_ / "VantorTemp").wstring());
    struct stat st{};
    ASSERT_EQ(::stat((tmp_ / "VantorTemp").c_str(), &st), 0);
    EXPECT_EQ(st.st_mode & 07777, 01777u);

    std::wstring log = L"previous";
    BuildImportLogPath(L"/home/u/sheets.v2/Bolts.xlsx", L"FastnerClearance_log.txt", log);
    EXPECT_EQ(log, folder + L"/BoltsFastnerClearance_log.txt");
    BuildImportLogPath(L"C:\\data\\My.Bolts.xls", L"FastenerEngement_log.txt", log);
    EXPECT_EQ(log, folder + L"/My.BoltsFastenerEngement_log.txt");
    log = L"previous";
    BuildImportLogPath(L"/home/u/sheets.v2/Bolts", L"x.txt", log);  // no point in the file name
    EXPECT_EQ(log, L"previous");
    BuildImportLogPath(L"Bolts.xlsx", L"x.txt", log);  // no folder
    EXPECT_EQ(log, L"previous");
}

TEST_F(FileHelpersTest, LogPassesTruncateThenAppendAndNeverFollowLinks) {
    const std::wstring folder = GetModuleTempFolder();
    const fs::path log = fs::path(folder) / "BoltsFastnerClearance_log.txt";
    ASSERT_TRUE(WriteImportLogPass(log.wstring(), true, L"Missing values:\n", {L"row 3", L"row 5"}));
    ASSERT_TRUE(WriteImportLogPass(log.wstring(), false, L"Repeated names:\n", {L"M8 \u00e4"}));
    EXPECT_EQ(Read(log), "Missing values:\nrow 3\nrow 5\nRepeated names:\nM8 \xc3\xa4\n");
    ASSERT_TRUE(WriteImportLogPass(log.wstring(), true, L"Again\n", {}));
    EXPECT_EQ(Read(log), "Again\n");

    const fs::path victim = tmp_ / "victim.txt";
    std::ofstream(victim) << "precious";
    const fs::path planted = fs::path(folder) / "EvilFastnerClearance_log.txt";
    fs::create_symlink(victim, planted);
    EXPECT_FALSE(WriteImportLogPass(planted.wstring(), true, L"overwrite", {}));
    EXPECT_FALSE(WriteImportLogPass(planted.wstring(), false, L"append", {}));
    EXPECT_EQ(Read(victim), "precious");
}

TEST_F(FileHelpersTest, FileNames) {
    EXPECT_EQ(GetFileNameFromPath(L"/a.b/c.d/part.prt.12"), L"part.prt.12");
    EXPECT_EQ(GetFileNameFromPath(L"C:\\a.b\\part.prt"), L"part.prt");
    EXPECT_EQ(GetFileNameFromPath(L"part.prt"), L"part.prt");
    EXPECT_EQ(GetBaseFileName(L"/a.b/c.d/part.prt.12"), L"part");
    EXPECT_EQ(GetBaseFileName(L"D:\\x.y\\noext"), L"noext");
    EXPECT_TRUE(ContainsNoCase(L"BOLT", {L"nut", L"bolt"}));
    EXPECT_FALSE(ContainsNoCase(L"bolts", {L"nut", L"bolt"}));
    EXPECT_FALSE(ContainsNoCase(L"", {}));

    const std::wstring text = L"M8 \u00e4\u4e2d";
    char* buffer = ToAnsiBuffer(text);
    EXPECT_STREQ(buffer, "M8 \xc3\xa4\xe4\xb8\xad");
    delete[] buffer;
}

TEST_F(FileHelpersTest, ComponentNames) {
    EXPECT_FALSE(ComponentNamesDiffer(L"bolt.prt", L"bolt.prt;3"));
    EXPECT_TRUE(ComponentNamesDiffer(L"Bolt.prt", L"bolt.prt"));
    EXPECT_FALSE(ComponentNamesDiffer(L"bolt", L"bolt"));
    EXPECT_FALSE(ComponentNamesDiffer(L"frame.asm.2", L"frame.asm"));
    EXPECT_TRUE(ComponentNamesDiffer(L"bolt.prt", L"bolt.asm"));
    EXPECT_TRUE(ComponentNamesDiffer(L"bolt.PRT", L"bolt.prt"));
    std::wstring name = L"x.asm.prt.7", ext;
    SplitComponentName(name, ext);
    EXPECT_EQ(name, L"x.asm.prt");  // ".prt" is looked for first
    EXPECT_EQ(ext, L".prt");
}

TEST_F(FileHelpersTest, PartTypeShortensPartNames) {
    const fs::path part = tmp_ / "bracket.prt";
    const fs::path assembly = tmp_ / "frame.prt";
    std::ofstream(part) << "p";
    std::ofstream(assembly) << "a";
    if (::setxattr(part.c_str(), "user.Siemens.NX.PartType", "Part", 4, 0) != 0)
        GTEST_SKIP() << "no user attributes on this file system: " << std::strerror(errno);
    ASSERT_EQ(::setxattr(assembly.c_str(), "user.Siemens.NX.PartType", "Assembly", 8, 0), 0);

    EXPECT_EQ(GetPartDisplayName(part.wstring(), L"bracket.prt"), L"bracket");
    EXPECT_EQ(GetPartDisplayName(assembly.wstring(), L"frame.prt"), L"frame.prt");
    EXPECT_EQ(GetPartDisplayName((tmp_ / "missing.prt").wstring(), L"missing.prt"), L"missing.prt");

    std::wstring value = L"unchanged";
    EXPECT_NE(ReadShellProperty(part.wstring(), L"No.Such.Property", value), 0);
    EXPECT_EQ(value, L"unchanged");
    EXPECT_NE(ReadShellProperty(part.wstring(), L"bad name!", value), 0);
    EXPECT_EQ(value, L"unchanged");
    setenv("ZEB_PART_FOLDER", tmp_.c_str(), 1);
    EXPECT_EQ(ReadShellProperty(L"${ZEB_PART_FOLDER}/bracket.prt", L"Siemens.NX.PartType", value), 0);
    EXPECT_EQ(value, L"Part");
}

TEST_F(FileHelpersTest, DatabaseModuleFileNames) {
    setenv("VANTOR_RES_DIR", VANTOR_BUILD_DIR "/share/vantor/res", 1);
    EXPECT_EQ(GetDBModuleFileName(0), L"");
    ASSERT_TRUE(StartAssemblyRulesApp());
    GetAssemblyRulesApp()->m_databaseModules = {L"/opt/vantor/lib/ZEBDatabaseu.so", L"C:\\x\\Other.dll"};
    EXPECT_EQ(GetDBModuleFileName(0), L"ZEBDatabaseu.so");
    EXPECT_EQ(GetDBModuleFileName(1), L"Other.dll");
    EXPECT_EQ(GetDBModuleFileName(2), L"");
    StopAssemblyRulesApp();
}

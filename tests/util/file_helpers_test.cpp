#include "util/file_helpers.h"

#include <fcntl.h>
#include <grp.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/types.h>
#include <sys/wait.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <functional>
#include <sstream>
#include <string>
#include <vector>

#include "app/assembly_rules_app.h"
#include "util/component_names.h"

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

// Unprivileged ids for the tests that run as other users; they need not exist.
constexpr uid_t kFirstUser = 64000;
constexpr uid_t kSecondUser = 64001;
constexpr uid_t kProbeUser = 64002;
constexpr uid_t kStranger = 64003;

fs::path OwnFolderOf(uid_t uid) { return fs::path("/tmp") / ("vantor-" + std::to_string(uid)); }

bool Exists(const fs::path& p) { return fs::exists(fs::symlink_status(p)); }

// The whole of a file read with plain system calls, which a forked child may use; "<none>" when
// it cannot be opened.
std::string ReadRaw(const std::string& path) {
    const int fd = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
    if (fd < 0) return "<none>";
    std::string text;
    char buffer[4096];
    ssize_t n;
    while ((n = ::read(fd, buffer, sizeof buffer)) > 0) text.append(buffer, static_cast<size_t>(n));
    ::close(fd);
    return text;
}

struct ChildResult {
    int status = -1;  // exit status, -1 when the child did not exit normally
    std::string out;  // what the child reported
};

// Runs `body` in a child process as user and group `uid` with TMPDIR unset, as a user who did
// not choose a temporary folder. The body fills its report and gives the exit status; 100 means
// the child could not become that user.
ChildResult RunAsUser(uid_t uid, const std::function<int(std::string&)>& body,
                      mode_t umaskBits = 022) {
    int fds[2];
    if (::pipe(fds) != 0) return {};
    const pid_t pid = ::fork();
    if (pid < 0) {
        ::close(fds[0]);
        ::close(fds[1]);
        return {};
    }
    if (pid == 0) {
        ::close(fds[0]);
        int code = 100;
        if (::setgroups(0, nullptr) == 0 && ::setgid(uid) == 0 && ::setuid(uid) == 0) {
            ::unsetenv("TMPDIR");
            ::umask(umaskBits);
            std::string out;
            code = body(out);
            for (size_t done = 0; done < out.size();) {
                const ssize_t n = ::write(fds[1], out.data() + done, out.size() - done);
                if (n <= 0) break;
                done += static_cast<size_t>(n);
            }
        }
        ::_exit(code);
    }
    ::close(fds[1]);
    ChildResult result;
    char buffer[4096];
    ssize_t n;
    while ((n = ::read(fds[0], buffer, sizeof buffer)) > 0)
        result.out.append(buffer, static_cast<size_t>(n));
    ::close(fds[0]);
    int status = 0;
    while (::waitpid(pid, &status, 0) < 0 && errno == EINTR) {
    }
    result.status = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    return result;
}

// Removes, on the way out, the folders a test made outside its own folder.
struct RemoveOnExit {
    std::vector<fs::path> paths;
    ~RemoveOnExit() {
        std::error_code ignored;
        for (const fs::path& p : paths) fs::remove_all(p, ignored);
    }
};
}  // namespace

TEST_F(FileHelpersTest, TemporaryFolderIsTmpdirElseOwnFolderAndLogPathsComeFromTheSheetName) {
    setenv("TMPDIR", (tmp_.string() + "//").c_str(),
           1);  // the user's choice, trailing separators cut
    const std::wstring folder = GetModuleTempFolder();
    EXPECT_EQ(folder, (tmp_ / "VantorTemp").wstring());
    struct stat st {};
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

    // An empty TMPDIR counts as unset: the user's own folder under /tmp, private to the user.
    const fs::path own = OwnFolderOf(::geteuid());
    RemoveOnExit cleanup;
    if (!Exists(own)) cleanup.paths.push_back(own);
    setenv("TMPDIR", "", 1);
    EXPECT_EQ(GetModuleTempFolder(), (own / "VantorTemp").wstring());
    ASSERT_EQ(::lstat(own.c_str(), &st), 0);
    EXPECT_TRUE(S_ISDIR(st.st_mode));
    EXPECT_EQ(st.st_uid, ::geteuid());
    EXPECT_EQ(st.st_mode & 022, 0u);
    ASSERT_EQ(::lstat((own / "VantorTemp").c_str(), &st), 0);
    EXPECT_EQ(st.st_mode & 07777, 01777u);
}

TEST_F(FileHelpersTest, LogPassesTruncateThenAppendAndNeverFollowLinks) {
    const std::wstring folder = GetModuleTempFolder();
    const fs::path log = fs::path(folder) / "BoltsFastnerClearance_log.txt";
    const mode_t oldMask = ::umask(022);
    ASSERT_TRUE(
        WriteImportLogPass(log.wstring(), true, L"Missing values:\n", {L"row 3", L"row 5"}));
    ::umask(oldMask);
    ASSERT_TRUE(WriteImportLogPass(log.wstring(), false, L"Repeated names:\n", {L"M8 \u00e4"}));
    EXPECT_EQ(Read(log), "Missing values:\nrow 3\nrow 5\nRepeated names:\nM8 \xc3\xa4\n");
    struct stat st {};
    ASSERT_EQ(::stat(log.c_str(), &st), 0);
    EXPECT_EQ(st.st_mode & 0777, 0600u);  // the rows are the user's own business
    ASSERT_TRUE(WriteImportLogPass(log.wstring(), true, L"Again\n", {}));
    EXPECT_EQ(Read(log), "Again\n");
    EXPECT_FALSE(WriteImportLogPass(L"", true, L"nowhere", {}));
    EXPECT_FALSE(WriteImportLogPass(folder + L"/", true, L"nowhere", {}));

    const fs::path victim = tmp_ / "victim.txt";
    std::ofstream(victim) << "precious";
    const fs::path planted = fs::path(folder) / "EvilFastnerClearance_log.txt";
    fs::create_symlink(victim, planted);
    EXPECT_FALSE(WriteImportLogPass(planted.wstring(), true, L"overwrite", {}));
    EXPECT_FALSE(WriteImportLogPass(planted.wstring(), false, L"append", {}));
    // A second name of the same file is no log of ours either.
    const fs::path linked = fs::path(folder) / "LinkedFastnerClearance_log.txt";
    fs::create_hard_link(victim, linked);
    EXPECT_FALSE(WriteImportLogPass(linked.wstring(), true, L"overwrite", {}));
    EXPECT_FALSE(WriteImportLogPass(linked.wstring(), false, L"append", {}));
    EXPECT_EQ(Read(victim), "precious");

    // Neither a fifo nor a folder at the log's place is written into, and the fifo does not hang.
    const fs::path fifo = fs::path(folder) / "FifoFastnerClearance_log.txt";
    ASSERT_EQ(::mkfifo(fifo.c_str(), 0666), 0);
    const int reader = ::open(fifo.c_str(), O_RDONLY | O_NONBLOCK);
    ASSERT_GE(reader, 0);
    EXPECT_FALSE(WriteImportLogPass(fifo.wstring(), true, L"into the pipe", {}));
    char byte;
    EXPECT_LE(::read(reader, &byte, 1), 0);
    ::close(reader);
    EXPECT_FALSE(WriteImportLogPass(fifo.wstring(), false, L"no reader", {}));
    fs::create_directory(fs::path(folder) / "DirFastnerClearance_log.txt");
    EXPECT_FALSE(WriteImportLogPass((fs::path(folder) / "DirFastnerClearance_log.txt").wstring(),
                                    true, L"x", {}));
}

TEST_F(FileHelpersTest, LogOfAnotherUserIsNeverWrittenInto) {
    if (::geteuid() != 0) GTEST_SKIP() << "only root can give a file to another user";
    const fs::path log = fs::path(GetModuleTempFolder()) / "partsFastnerClearance_log.txt";
    std::ofstream(log) << "their rows\n";
    ASSERT_EQ(::chown(log.c_str(), kStranger, kStranger), 0);
    ASSERT_EQ(::chmod(log.c_str(), 0666), 0);  // even one that anybody may write
    EXPECT_FALSE(WriteImportLogPass(log.wstring(), true, L"Missing values:\n", {L"row 3"}));
    EXPECT_FALSE(WriteImportLogPass(log.wstring(), false, L"Repeated names:\n", {L"M8"}));
    EXPECT_EQ(Read(log), "their rows\n");
}

TEST_F(FileHelpersTest, TwoUsersImportingTheSameSheetEachSeeTheirOwnLog) {
    if (::geteuid() != 0) GTEST_SKIP() << "running as two users needs root";
    RemoveOnExit cleanup;
    const uid_t users[] = {kFirstUser, kSecondUser};
    for (uid_t uid : users)
        if (!Exists(OwnFolderOf(uid))) cleanup.paths.push_back(OwnFolderOf(uid));

    // One after the other, as when the second user imports a sheet of the same name later on.
    std::string paths[2];
    for (int i = 0; i < 2; ++i) {
        const std::string own = "rows of " + std::to_string(users[i]);
        const ChildResult child = RunAsUser(users[i], [&](std::string& out) {
            std::wstring log;
            BuildImportLogPath(L"/data/parts.xls", L"FastnerClearance_log.txt", log);
            out = fs::path(log).string();
            if (log.empty()) return 1;
            if (!WriteImportLogPass(log, true, L"Missing values:\n", {fs::path(own).wstring()}))
                return 2;
            if (!WriteImportLogPass(log, false, L"Repeated names:\n", {L"M8"})) return 3;
            return ReadRaw(out) == "Missing values:\n" + own + "\nRepeated names:\nM8\n" ? 0 : 4;
        });
        EXPECT_EQ(child.status, 0)
            << "user " << users[i] << ", log " << child.out
            << " (1 no log path, 2-3 log not written, 4 other rows read back)";
        paths[i] = child.out;
    }
    EXPECT_NE(paths[0], paths[1]);
    EXPECT_EQ(paths[0],
              (OwnFolderOf(kFirstUser) / "VantorTemp/partsFastnerClearance_log.txt").string());
}

TEST_F(FileHelpersTest, OwnTemporaryFolderIsRefusedUnlessPrivateRealAndOwned) {
    if (::geteuid() != 0) GTEST_SKIP() << "preparing another user's folder needs root";
    const fs::path own = OwnFolderOf(kProbeUser);
    if (Exists(own)) GTEST_SKIP() << own << " exists already; not touching it";
    RemoveOnExit cleanup{{own}};
    // What the probe user gets: "<module temp folder>|<log path>|<log written>".
    const auto probe = [](mode_t umaskBits = 022) {
        const ChildResult child = RunAsUser(
            kProbeUser,
            [](std::string& out) {
                std::wstring log = L"previous";
                BuildImportLogPath(L"/data/parts.xls", L"FastnerClearance_log.txt", log);
                const bool written =
                    WriteImportLogPass(log, true, L"Missing values:\n", {L"row 3"});
                out = fs::path(GetModuleTempFolder()).string() + "|" + fs::path(log).string() +
                      "|" + (written ? "written" : "not written");
                return 0;
            },
            umaskBits);
        return child.status == 0 ? child.out : "child failed: " + std::to_string(child.status);
    };
    const std::string refused = "||not written";
    const std::string vantorTemp = (own / "VantorTemp").string();
    const std::string accepted =
        vantorTemp + "|" + vantorTemp + "/partsFastnerClearance_log.txt|written";

    // Absent: made private whatever the umask, "VantorTemp" inside it as everywhere.
    EXPECT_EQ(probe(0777), accepted);
    struct stat st {};
    ASSERT_EQ(::lstat(own.c_str(), &st), 0);
    EXPECT_TRUE(S_ISDIR(st.st_mode));
    EXPECT_EQ(st.st_uid, kProbeUser);
    EXPECT_EQ(st.st_mode & 07777, 0700u);
    ASSERT_EQ(::lstat(vantorTemp.c_str(), &st), 0);
    EXPECT_EQ(st.st_mode & 07777, 01777u);
    fs::remove_all(own);

    // An existing folder of the user that others may read but not write is used.
    ASSERT_EQ(::mkdir(own.c_str(), 0755), 0);
    ASSERT_EQ(::chown(own.c_str(), kProbeUser, kProbeUser), 0);
    ASSERT_EQ(::chmod(own.c_str(), 0755), 0);
    EXPECT_EQ(probe(), accepted);
    fs::remove_all(own);

    // Writable by the group or by others: someone else could swap the logs.
    for (mode_t mode : {0770, 0703, 01777}) {
        ASSERT_EQ(::mkdir(own.c_str(), 0700), 0);
        ASSERT_EQ(::chown(own.c_str(), kProbeUser, kProbeUser), 0);
        ASSERT_EQ(::chmod(own.c_str(), mode), 0);
        EXPECT_EQ(probe(), refused) << "mode " << std::oct << mode;
        EXPECT_FALSE(Exists(own / "VantorTemp")) << "mode " << std::oct << mode;
        fs::remove_all(own);
    }

    // Another user's folder, even a private one.
    ASSERT_EQ(::mkdir(own.c_str(), 0700), 0);
    EXPECT_EQ(probe(), refused);
    EXPECT_FALSE(Exists(own / "VantorTemp"));
    fs::remove_all(own);

    // Not a folder.
    std::ofstream(own) << "x";
    ASSERT_EQ(::chown(own.c_str(), kProbeUser, kProbeUser), 0);
    EXPECT_EQ(probe(), refused);
    fs::remove_all(own);

    // A link, even to a private folder of the user: whoever made it chose where the logs go.
    char targetName[] = "/tmp/vantor-link-target-XXXXXX";
    ASSERT_NE(::mkdtemp(targetName), nullptr);
    const fs::path target = targetName;
    cleanup.paths.push_back(target);
    ASSERT_EQ(::chown(target.c_str(), kProbeUser, kProbeUser), 0);
    fs::create_directory_symlink(target, own);
    EXPECT_EQ(probe(), refused);
    EXPECT_FALSE(Exists(target / "VantorTemp"));
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
    // The same rule as the database's: letters beyond ASCII fold too, in any locale.
    EXPECT_TRUE(ContainsNoCase(L"STÄHLE", {L"Stähle"}));

    const std::wstring text = L"M8 \u00e4\u4e2d";
    char* buffer = ToAnsiBuffer(text);
    EXPECT_STREQ(buffer, "M8 \xc3\xa4\xe4\xb8\xad");
    delete[] buffer;
}

TEST_F(FileHelpersTest, ComponentNames) {
    EXPECT_FALSE(ComponentNamesDiffer(L"bolt.prt", L"bolt.prt;3"));
    // Letter case counts nowhere else in the program's names, so not here either.
    EXPECT_FALSE(ComponentNamesDiffer(L"Bolt.prt", L"bolt.prt"));
    EXPECT_FALSE(ComponentNamesDiffer(L"BOLT.PRT;2", L"bolt.prt"));
    EXPECT_TRUE(ComponentNamesDiffer(L"Bolt.prt", L"bolts.prt"));
    EXPECT_FALSE(ComponentNamesDiffer(L"bolt", L"bolt"));
    EXPECT_FALSE(ComponentNamesDiffer(L"frame.asm.2", L"frame.asm"));
    EXPECT_TRUE(ComponentNamesDiffer(L"bolt.prt", L"bolt.asm"));
    EXPECT_TRUE(ComponentNamesDiffer(L"bolt.PRT", L"bolt.ASM"));
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
    if (::setxattr(part.c_str(), "user.Vantor.PartType", "Part", 4, 0) != 0)
        GTEST_SKIP() << "no user attributes on this file system: " << std::strerror(errno);
    ASSERT_EQ(::setxattr(assembly.c_str(), "user.Vantor.PartType", "Assembly", 8, 0), 0);

    EXPECT_EQ(GetPartDisplayName(part.wstring(), L"bracket.prt"), L"bracket");
    EXPECT_EQ(GetPartDisplayName(assembly.wstring(), L"frame.prt"), L"frame.prt");
    EXPECT_EQ(GetPartDisplayName((tmp_ / "missing.prt").wstring(), L"missing.prt"), L"missing.prt");

    std::wstring value = L"unchanged";
    EXPECT_NE(ReadShellProperty(part.wstring(), L"No.Such.Property", value), 0);
    EXPECT_EQ(value, L"unchanged");
    EXPECT_NE(ReadShellProperty(part.wstring(), L"bad name!", value), 0);
    EXPECT_EQ(value, L"unchanged");
    setenv("ZEB_PART_FOLDER", tmp_.c_str(), 1);
    EXPECT_EQ(ReadShellProperty(L"${ZEB_PART_FOLDER}/bracket.prt", L"Vantor.PartType", value), 0);
    EXPECT_EQ(value, L"Part");
}

TEST_F(FileHelpersTest, DatabaseModuleFileNames) {
    setenv("VANTOR_RES_DIR", VANTOR_BUILD_DIR "/share/vantor/res", 1);
    EXPECT_EQ(GetDBModuleFileName(0), L"");
    ASSERT_TRUE(StartAssemblyRulesApp());
    GetAssemblyRulesApp()->m_databaseModules = {L"/opt/vantor/lib/ZEBDatabaseu.so",
                                                L"C:\\x\\Other.dll"};
    EXPECT_EQ(GetDBModuleFileName(0), L"ZEBDatabaseu.so");
    EXPECT_EQ(GetDBModuleFileName(1), L"Other.dll");
    EXPECT_EQ(GetDBModuleFileName(2), L"");
    StopAssemblyRulesApp();
}

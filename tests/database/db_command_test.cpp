#include <gtest/gtest.h>
#include <sys/wait.h>

#include <cstdio>
#include <string>

#include "tests/database/db_test_support.h"

namespace {

struct CommandResult {
    int status;
    std::string out;
};

// Runs the built host with the database folder of the test; standard error is dropped.
CommandResult RunDb(const std::string& args) {
    const std::string command =
        std::string(VANTOR_BUILD_DIR) + "/bin/vantor-rules db " + args + " 2>/dev/null";
    CommandResult result{-1, {}};
    FILE* pipe = ::popen(command.c_str(), "r");
    if (!pipe) return result;
    char buffer[4096];
    size_t n;
    while ((n = std::fread(buffer, 1, sizeof buffer, pipe)) > 0) result.out.append(buffer, n);
    const int status = ::pclose(pipe);
    result.status = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    return result;
}

}  // namespace

TEST(DbCommand, FastenerNamesFromTheCommandLine) {
    ScopedDatabaseFolder folder;
    EXPECT_EQ(RunDb("path").out, folder.File().string() + "\n");

    CommandResult r = RunDb("fasteners add 'Flange bolt M10'");
    EXPECT_EQ(r.status, 0);
    EXPECT_EQ(r.out, "add Flange bolt M10: done\n");
    r = RunDb("fasteners add 'FLANGE BOLT m10'");
    EXPECT_EQ(r.status, 1);
    EXPECT_EQ(r.out, "add FLANGE BOLT m10: already exists\n");

    r = RunDb("fasteners list");
    EXPECT_EQ(r.status, 0);
    EXPECT_EQ(r.out.rfind("Flange bolt M10\n"), r.out.size() - 16);  // last, as given
    EXPECT_NE(r.out.find("ISO 4017 M8\n"), std::string::npos);

    EXPECT_EQ(RunDb("fasteners rename 'flange bolt m10' 'Flange screw M10'").status, 0);
    EXPECT_EQ(RunDb("fasteners rename 'Nothing here' 'X'").status, 1);
    EXPECT_EQ(RunDb("fasteners delete 'FLANGE SCREW M10'").status, 0);
    r = RunDb("fasteners delete 'FLANGE SCREW M10'");
    EXPECT_EQ(r.status, 1);
    EXPECT_EQ(r.out, "delete FLANGE SCREW M10: refused by the database\n");
    EXPECT_EQ(RunDb("fasteners list").out.find("Flange"), std::string::npos);
}

TEST(DbCommand, MaterialsAndIgnoreListFromTheCommandLine) {
    ScopedDatabaseFolder folder;
    EXPECT_EQ(RunDb("materials add 'Titanium alloys' 'Ti-6Al-4V'").status, 0);
    EXPECT_EQ(RunDb("materials add 'titanium alloys' 'TI-6AL-4V'").status, 1);
    CommandResult r = RunDb("materials list");
    EXPECT_EQ(r.status, 0);
    EXPECT_NE(r.out.find("Titanium alloys\tTi-6Al-4V\n"), std::string::npos);
    EXPECT_NE(r.out.find("Steels\tC45\n"), std::string::npos);
    EXPECT_EQ(RunDb("materials delete 'Titanium alloys' 'Ti-6Al-4V'").status, 0);
    EXPECT_EQ(RunDb("materials delete 'Titanium alloys' 'Ti-6Al-4V'").status, 1);
    EXPECT_EQ(RunDb("materials list").out.find("Titanium"), std::string::npos);

    EXPECT_EQ(RunDb("ignore set 'Welle Ø20' bracket 'a b'").status, 0);
    EXPECT_EQ(RunDb("ignore list").out, "Welle Ø20\nbracket\na b\n");
    EXPECT_EQ(RunDb("ignore set").status, 0);
    EXPECT_EQ(RunDb("ignore list").out, "");
}

TEST(DbCommand, BadArgumentsAndUnusableDatabaseExitWithTwo) {
    ScopedDatabaseFolder folder;
    EXPECT_EQ(RunDb("").status, 2);
    EXPECT_EQ(RunDb("colours list").status, 2);
    EXPECT_EQ(RunDb("fasteners add").status, 2);
    EXPECT_EQ(RunDb("materials add OnlyGroup").status, 2);

    std::ofstream(folder.File()) << std::string(2000, '#');
    const std::string before = FileBytes(folder.File());
    const CommandResult r = RunDb("fasteners add X");
    EXPECT_EQ(r.status, 2);
    EXPECT_EQ(r.out, "");
    EXPECT_EQ(FileBytes(folder.File()), before);
}

// ".xls" workbooks are parsed in the reader program: hostile files, a reader that dies or answers
// badly, and the limits it runs under.
#include "util/biff_reader.h"

#include <gtest/gtest.h>
#include <sys/wait.h>

#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <string>

#include "util/sheet_table.h"

namespace fs = std::filesystem;

namespace {
using Table = std::vector<std::vector<std::wstring>>;

const fs::path kData = fs::path(VANTOR_SOURCE_DIR) / "tests/data";

struct Outcome {
    bool ok = false;
    ZebStringId error{};
    Table table;
};

Outcome ReadColumns(const fs::path& path, std::initializer_list<const wchar_t*> letters) {
    std::vector<SpreadsheetColumn> columns;
    for (const wchar_t* letter : letters) columns.push_back({letter, 0});
    Outcome outcome;
    SpreadsheetTable table;
    int rowLimit = 0;
    outcome.ok = ReadWorkbookTable(path.wstring(), columns, table, rowLimit, false, outcome.error);
    for (const auto& column : table) outcome.table.emplace_back(column.begin(), column.end());
    return outcome;
}

// True when this process has no child left, running or waiting to be reaped.
bool NoChildLeft() { return waitpid(-1, nullptr, WNOHANG) < 0 && errno == ECHILD; }

// Points the import at the fake reader program in one mode for the life of the object.
class FakeReader {
public:
    explicit FakeReader(const char* mode) {
        setenv(kBiffReaderEnvironment, VANTOR_FAKE_XLS_READER, 1);
        setenv("VANTOR_FAKE_XLS_MODE", mode, 1);
    }
    ~FakeReader() {
        unsetenv(kBiffReaderEnvironment);
        unsetenv("VANTOR_FAKE_XLS_MODE");
    }
};
}  // namespace

TEST(BiffReaderTest, WorkbooksReadThroughTheReaderProgram) {
    // One workbook's stream is in the compound file's mini stream (padded for libfreexl), the
    // other's not.
    for (const char* name : {"shared_small.xls", "shared_large.xls"}) {
        const Outcome read = ReadColumns(kData / name, {L"A", L"B", L"D"});
        ASSERT_TRUE(read.ok) << name;
        EXPECT_EQ(read.table,
                  (Table{{L"bolt.prt", L"nut.prt", L"washer.prt", L"\u00fcn\u00efcode & <tags>"},
                         {L"3", L"12", L"M8", L"-4"},
                         {L"first", L"", L"third", L"x"}}))
            << name;
    }
    // The active sheet is the second one.
    const Outcome second = ReadColumns(kData / "second_active.xls", {L"A"});
    ASSERT_TRUE(second.ok);
    EXPECT_EQ(second.table, (Table{{L"second sheet", L"row 2"}}));
    EXPECT_TRUE(NoChildLeft());
}

TEST(BiffReaderTest, HostileWorkbooksGiveTheErrorAndLeaveTheProcessRunning) {
    // Crashes, over-reads and copies libfreexl makes on these end the reader program at worst;
    // the inactive sheet's 65,536 x 256 declared cells are refused before libfreexl opens it.
    for (const char* name :
         {"biff-SEGV.xls", "biff-heap-buffer-overflow.xls", "biff-stack-buffer-underflow.xls",
          "biff-memcpy-param-overlap.xls", "biff-inactive-sheet-64Kx256.xls"}) {
        const Outcome read = ReadColumns(kData / "hostile" / name, {L"A", L"B"});
        EXPECT_FALSE(read.ok) << name;
        EXPECT_EQ(read.error, IDS_SHEET_NOT_READABLE) << name;
        EXPECT_TRUE(NoChildLeft()) << name;
    }
}

TEST(BiffReaderTest, AReaderThatDiesOrAnswersBadlyGivesTheError) {
    const fs::path workbook = kData / "shared_small.xls";
    {
        // The fake's well-formed answer is taken as it stands, which shows the others fail only
        // by what their mode breaks.
        FakeReader reader("ok");
        const Outcome read = ReadColumns(workbook, {L"A"});
        ASSERT_TRUE(read.ok);
        EXPECT_EQ(read.table, (Table{{L"bolt.prt", L"12.5"}}));
    }
    for (const char* mode :
         {"kill-midway", "no-end", "cut-record", "bad-magic", "stray-column", "bad-kind",
          "row-out-of-range", "huge-text", "trailing", "exit-3", "killed-after-answer"}) {
        FakeReader reader(mode);
        const Outcome read = ReadColumns(workbook, {L"A"});
        EXPECT_FALSE(read.ok) << mode;
        EXPECT_EQ(read.error, IDS_SHEET_NOT_READABLE) << mode;
        EXPECT_TRUE(NoChildLeft()) << mode;
    }
    {
        // No program where the override points: the reader cannot be started.
        setenv(kBiffReaderEnvironment, (fs::temp_directory_path() / "no-such-reader").c_str(), 1);
        const Outcome read = ReadColumns(workbook, {L"A"});
        unsetenv(kBiffReaderEnvironment);
        EXPECT_FALSE(read.ok);
        EXPECT_EQ(read.error, IDS_SHEET_READER_NOT_STARTED);
    }
}

TEST(BiffReaderTest, TheReaderRunsUnderLimitsWithOnlyItsPipe) {
    FakeReader reader("limits");
    const Outcome read = ReadColumns(kData / "shared_small.xls", {L"A"});
    ASSERT_TRUE(read.ok);
    ASSERT_EQ(read.table.size(), 1u);
    // Address space 1 GiB (open in a checking build), processor time 10 s, no core file,
    // descriptors 0 to 2 only, standard input and error on /dev/null.
    const std::wstring addressSpace =
        kBiffReaderAddressSpace ? std::to_wstring(kBiffReaderAddressSpace) : L"unlimited";
    EXPECT_EQ(read.table[0], (std::vector<std::wstring>{addressSpace, L"10", L"0", L"0,1,2",
                                                        L"/dev/null", L"/dev/null"}));
    EXPECT_TRUE(NoChildLeft());
}

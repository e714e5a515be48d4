// Workbooks built to exhaust or crash the Office Open XML reader: each one is refused with the
// import's error text, in bounded memory, and the process goes on.
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <zip.h>

#include <cstdio>
#include <filesystem>
#include <map>
#include <string>

#include "tests/support/module_environment.h"
#include "tests/support/scoped_temp_dir.h"
#include "tests/support/sheet_columns.h"
#include "tests/support/sheet_writer.h"
#include "util/spreadsheet.h"

namespace fs = std::filesystem;

namespace {
using Table = std::vector<std::vector<std::wstring>>;

const fs::path kHostileData = fs::path(VANTOR_SOURCE_DIR) / "tests/data/hostile";

// A one-sheet package with the given sheet, shared strings and styles.
std::map<std::string, std::string> Package(const std::string& sheet,
                                           const std::string& sharedStrings,
                                           const std::string& styles = "<styleSheet/>") {
    const std::string rel =
        R"(<Relationship Type="http://schemas.openxmlformats.org/officeDocument/2006/relationships/)";
    return {
        {"_rels/.rels", "<Relationships>" + rel +
                            R"(officeDocument" Id="rId1" Target="xl/workbook.xml"/>)" +
                            "</Relationships>"},
        {"xl/_rels/workbook.xml.rels",
         "<Relationships>" + rel + R"(worksheet" Id="rId1" Target="worksheets/sheet1.xml"/>)" +
             rel + R"(sharedStrings" Id="rId2" Target="sharedStrings.xml"/>)" + rel +
             R"(styles" Id="rId3" Target="styles.xml"/>)" + "</Relationships>"},
        {"xl/workbook.xml",
         R"(<workbook xmlns:r="http://schemas.openxmlformats.org/officeDocument/2006/relationships">)"
         R"(<sheets><sheet name="One" sheetId="1" r:id="rId1"/></sheets></workbook>)"},
        {"xl/worksheets/sheet1.xml", "<worksheet><sheetData>" + sheet + "</sheetData></worksheet>"},
        {"xl/sharedStrings.xml", "<sst>" + sharedStrings + "</sst>"},
        {"xl/styles.xml", styles},
    };
}

long PeakRssKiB() {
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return usage.ru_maxrss;
}

class HostileXlsxTest : public ModuleTest {
protected:
    void SetUp() override {
        m_notReadable = LoadLocalizedString(IDS_SHEET_NOT_READABLE);
        ASSERT_FALSE(m_notReadable.empty());
    }

    // Reads through ReadSpreadsheet; on failure `error` gets the text and the table is empty.
    Table Read(const fs::path& path, const std::vector<SpreadsheetColumn>& columns, bool& ok,
               std::wstring& error) {
        SpreadsheetTable table{{L"stale"}};
        SpreadsheetError failure;
        ok = ReadSpreadsheet(path.wstring(), columns, table, failure);
        error = ok ? std::wstring() : SpreadsheetErrorText(failure);
        if (!ok) {
            EXPECT_TRUE(table.empty());
        }
        Table flat;
        for (const auto& column : table) flat.emplace_back(column.begin(), column.end());
        return flat;
    }

    // The error text for a package read by the built-in reader (".XLSX") and the reader library
    // (".xlsx"); both must agree.
    std::wstring RefusalOf(const std::map<std::string, std::string>& package) {
        WriteZip(m_dir / "built-in.XLSX", package);
        WriteZip(m_dir / "library.xlsx", package);
        bool ok = true;
        std::wstring builtIn, library;
        Read(m_dir / "built-in.XLSX", Columns({L"A", L"B"}), ok, builtIn);
        EXPECT_FALSE(ok);
        Read(m_dir / "library.xlsx", Columns({L"A", L"B"}), ok, library);
        EXPECT_FALSE(ok);
        EXPECT_EQ(builtIn, library);
        return builtIn;
    }

    // Columns "A" and "B" of a package that must read, through both readers alike.
    Table Read(const std::map<std::string, std::string>& package) {
        WriteZip(m_dir / "built-in.XLSX", package);
        WriteZip(m_dir / "library.xlsx", package);
        bool ok = false;
        std::wstring error;
        const Table builtIn = Read(m_dir / "built-in.XLSX", Columns({L"A", L"B"}), ok, error);
        EXPECT_TRUE(ok) << error;
        const Table library = Read(m_dir / "library.xlsx", Columns({L"A", L"B"}), ok, error);
        EXPECT_TRUE(ok) << error;
        EXPECT_EQ(builtIn, library);
        return builtIn;
    }

    ScopedTempDir m_temp{"vantor-hostile-"};
    const fs::path m_dir = m_temp.Path();
    std::wstring m_notReadable;
};

// Runs `vantor-rules sheet FILE A` in a child; its exit status, or -1 when it did not exit.
int SheetCommandStatus(const fs::path& file) {
    const std::string command = VANTOR_BUILD_DIR "/bin/vantor-rules sheet '" + file.string() +
                                "' A >/dev/null 2>&1; echo $?";
    std::FILE* pipe = popen(command.c_str(), "r");
    if (!pipe) return -1;
    int status = -1;
    if (std::fscanf(pipe, "%d", &status) != 1) status = -1;
    pclose(pipe);
    return status;
}
}  // namespace

TEST_F(HostileXlsxTest, HostileFilesAreRefusedInModestMemoryAndTheProcessSurvives) {
    for (const char* name :
         {"shared-strings-nested-si.xlsx", "styles-100k-formats.xlsx", "empty-tag.xlsx"}) {
        const fs::path file = kHostileData / name;
        ASSERT_TRUE(fs::exists(file)) << file;
        const long before = PeakRssKiB();
        bool ok = true;
        std::wstring error;
        // Through the reader library (".xlsx") and through the built-in reader.
        Read(file, Columns({L"A", L"B"}), ok, error);
        EXPECT_FALSE(ok) << name;
        EXPECT_EQ(error, m_notReadable) << name;
        fs::copy_file(file, m_dir / "copy.XLSX", fs::copy_options::overwrite_existing);
        Read(m_dir / "copy.XLSX", Columns({L"A", L"B"}), ok, error);
        EXPECT_FALSE(ok) << name;
        EXPECT_EQ(error, m_notReadable) << name;
        // The nested strings file once took over a gigabyte.
        EXPECT_LT(PeakRssKiB() - before, 200L * 1024) << name;
        // A separate process reading it ends with the error status, not a signal.
        EXPECT_EQ(SheetCommandStatus(file), 2) << name;
    }
}

TEST_F(HostileXlsxTest, SharedStringsRefuseNestingAndTextBeyondTheReadCap) {
    const std::string sheet = R"(<row r="1"><c r="A1" t="s"><v>1</v></c></row>)"
                              R"(<row r="2"><c r="A2" t="s"><v>0</v></c></row>)";
    // Siblings, rich runs and phonetic runs read as before.
    EXPECT_EQ(Read(Package(sheet,
                           "<si><t>first</t></si><si><r><t>rich </t></r><r><t>second"
                           "</t></r><rPh><t>PH</t></rPh></si>")),
              (Table{{L"rich second", L"first"}, {L"", L""}}));
    // A string inside a string, open or empty, at any depth.
    for (const std::string& nested :
         {std::string("<si><t>a</t><si><t>b</t></si></si>"), std::string("<si><si/></si>"),
          "<si><t>ok</t></si>" + Repeat("<si>", 200) + Repeat("</si>", 200)})
        EXPECT_EQ(RefusalOf(Package(sheet, nested)), m_notReadable) << nested;

    // The pool counts characters, not bytes, and all strings together: 20 strings of a mebi
    // character in two-byte UTF-8 (40 MiB) read, 40 of them are more than a read may collect.
    const std::string wide = "<si><t>" + Repeat("\xC3\xA9", 1 << 20) + "</t></si>";
    const std::string small = "<si><t>x</t></si><si><t>y</t></si>";
    EXPECT_EQ(Read(Package(sheet, small + Repeat(wide, 20))), (Table{{L"y", L"x"}, {L"", L""}}));
    EXPECT_EQ(RefusalOf(Package(sheet, small + Repeat(wide, 40))), m_notReadable);
    // Many runs of one string add up as well.
    EXPECT_EQ(RefusalOf(Package(
                  sheet, "<si>" + Repeat("<r><t>" + std::string(1 << 20, 'z') + "</t></r>", 40) +
                             "</si>")),
              m_notReadable);
}

TEST_F(HostileXlsxTest, EmptyTagsAreErrors) {
    const std::string cell = R"(<row r="1"><c r="A1" t="s"><v>0</v></c>)";
    for (const std::string tag : {"<>", "</>", "< >", "<//>", "</ >"}) {
        EXPECT_EQ(RefusalOf(Package(cell + tag + "</row>", "<si><t>x</t></si>")), m_notReadable)
            << tag;
        EXPECT_EQ(RefusalOf(Package(cell + "</row>", "<si><t>x</t>" + tag + "</si>")),
                  m_notReadable)
            << tag;
    }
    EXPECT_EQ(Read(Package(cell + "</row>", "<si><t>x</t></si>")), (Table{{L"x"}, {L""}}));
}

TEST_F(HostileXlsxTest, NumberFormatsDecideDatesByIdUpToTheCap) {
    // Column "B" holds numbers in styles 0-2; a date cell reads as an empty text.
    std::string sheet;
    for (int row = 1; row <= 3; ++row) {
        const std::string r = std::to_string(row);
        sheet += "<row r=\"" + r + "\"><c r=\"A" + r + "\" t=\"s\"><v>0</v></c><c r=\"B" + r +
                 "\" s=\"" + std::to_string(row - 1) + "\"><v>" + r + "</v></c></row>";
    }
    const auto styles = [](size_t fillers) {
        // Filler formats use an id no style names; id 200 is a date until a later format of the
        // same id replaces it, id 201 the other way round; style 2 uses built-in date format 14.
        return "<styleSheet><numFmts>" +
               Repeat(R"(<numFmt numFmtId="9000" formatCode="0.00"/>)", fillers) +
               R"(<numFmt numFmtId="200" formatCode="yyyy-mm-dd"/>)"
               R"(<numFmt numFmtId="201" formatCode="0.0"/>)"
               R"(<numFmt numFmtId="200" formatCode="0.000"/>)"
               R"(<numFmt numFmtId="201" formatCode="[h]:mm"/>)"
               "</numFmts><cellXfs>"
               R"(<xf numFmtId="200"/><xf numFmtId="201"/><xf numFmtId="14"/>)" +
               Repeat(R"(<xf numFmtId="9000"/>)", fillers) + "</cellXfs></styleSheet>";
    };
    const std::string strings = "<si><t>name</t></si>";
    const Table expected{{L"name", L"name", L"name"}, {L"1", L"", L""}};
    EXPECT_EQ(Read(Package(sheet, strings, styles(0))), expected);
    // Exactly the cap of 65,536 formats, named by as many styles, still reads.
    EXPECT_EQ(Read(Package(sheet, strings, styles(65536 - 4))), expected);
    EXPECT_EQ(RefusalOf(Package(sheet, strings, styles(65536 - 3))), m_notReadable);
}

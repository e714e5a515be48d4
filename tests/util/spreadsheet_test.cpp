#include "util/spreadsheet.h"

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <xlsxwriter.h>
#include <zip.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <functional>
#include <map>

#include "tests/support/module_environment.h"
#include "tests/support/scoped_temp_dir.h"
#include "tests/support/sheet_columns.h"
#include "tests/support/sheet_writer.h"

namespace fs = std::filesystem;

namespace {
using Table = std::vector<std::vector<std::wstring>>;

Table Flatten(const SpreadsheetTable& table) {
    Table flat;
    for (const auto& column : table) flat.emplace_back(column.begin(), column.end());
    return flat;
}

// Writes a workbook with libxlsxwriter; `fill` writes the first sheet.
void WriteXlsx(const fs::path& path,
               const std::function<void(lxw_workbook*, lxw_worksheet*)>& fill) {
    lxw_workbook* workbook = workbook_new(path.c_str());
    lxw_worksheet* sheet = workbook_add_worksheet(workbook, nullptr);
    fill(workbook, sheet);
    ASSERT_EQ(workbook_close(workbook), LXW_NO_ERROR);
}

// The sheet that tests/data/make_xls.js writes as ".xls".
void WriteSharedSheet(lxw_workbook* workbook, lxw_worksheet* sheet) {
    worksheet_write_string(sheet, 0, 0, "bolt.prt", nullptr);
    worksheet_write_number(sheet, 0, 1, 3, nullptr);
    worksheet_write_number(sheet, 0, 2, 2.5, nullptr);
    worksheet_write_string(sheet, 0, 3, "first", nullptr);
    lxw_format* date = workbook_add_format(workbook);
    format_set_num_format(date, "yyyy-mm-dd");
    worksheet_write_number(sheet, 0, 4, 45000, date);
    worksheet_write_boolean(sheet, 0, 5, 1, nullptr);
    worksheet_write_string(sheet, 1, 0, "  nut.prt ", nullptr);
    worksheet_write_number(sheet, 1, 1, 12, nullptr);
    worksheet_write_number(sheet, 1, 2, 0.125, nullptr);
    worksheet_write_string(sheet, 2, 0, "washer.prt", nullptr);
    worksheet_write_string(sheet, 2, 1, "M8", nullptr);
    worksheet_write_number(sheet, 2, 2, 100, nullptr);
    worksheet_write_string(sheet, 2, 3, "third", nullptr);
    worksheet_write_string(sheet, 3, 0,
                           "\xC3\xBCn\xC3\xAF"
                           "code & <tags>",
                           nullptr);
    worksheet_write_number(sheet, 3, 1, -4, nullptr);
    worksheet_write_number(sheet, 3, 2, 1e-7, nullptr);
    worksheet_write_string(sheet, 3, 3, "x", nullptr);
}

const char* kContentTypes =
    R"(<?xml version="1.0" encoding="UTF-8"?><Types xmlns="http://schemas.openxmlformats.org/package/2006/content-types"/>)";
const char* kRootRels =
    R"(<Relationships xmlns="http://schemas.openxmlformats.org/package/2006/relationships">)"
    R"(<Relationship Id="rId1" Type="http://schemas.openxmlformats.org/officeDocument/2006/relationships/officeDocument" Target="xl/workbook.xml"/></Relationships>)";
const char* kWorkbookRels =
    R"(<Relationships xmlns="http://schemas.openxmlformats.org/package/2006/relationships">)"
    R"(<Relationship Id="rId1" Type="http://schemas.openxmlformats.org/officeDocument/2006/relationships/worksheet" Target="worksheets/sheet1.xml"/>)"
    R"(<Relationship Id="rId2" Type="http://schemas.openxmlformats.org/officeDocument/2006/relationships/worksheet" Target="/xl/worksheets/other.xml"/>)"
    R"(<Relationship Id="rId3" Type="http://schemas.openxmlformats.org/officeDocument/2006/relationships/sharedStrings" Target="sharedStrings.xml"/>)"
    R"(</Relationships>)";

// A package with two sheets, the second one active, written with a namespace prefix.
std::map<std::string, std::string> HandWrittenPackage(const std::string& activeSheetXml) {
    return {
        {"[Content_Types].xml", kContentTypes},
        {"_rels/.rels", kRootRels},
        {"xl/_rels/workbook.xml.rels", kWorkbookRels},
        {"xl/workbook.xml",
         R"(<x:workbook xmlns:x="http://schemas.openxmlformats.org/spreadsheetml/2006/main" )"
         R"(xmlns:r="http://schemas.openxmlformats.org/officeDocument/2006/relationships">)"
         R"(<x:bookViews><x:workbookView activeTab="1"/></x:bookViews><x:sheets>)"
         R"(<x:sheet name="One" sheetId="1" r:id="rId1"/><x:sheet name="Two" sheetId="2" r:id="rId2"/>)"
         R"(</x:sheets></x:workbook>)"},
        {"xl/sharedStrings.xml",
         R"(<sst xmlns="http://schemas.openxmlformats.org/spreadsheetml/2006/main">)"
         R"(<si><t>plain</t></si>)"
         R"(<si><r><rPr><b/></rPr><t xml:space="preserve">rich </t></r><r><t>text</t></r><rPh><t>PHONETIC</t></rPh></si>)"
         R"(<si><t>tab_x0009_here &amp; &#x41;</t></si></sst>)"},
        {"xl/worksheets/sheet1.xml",
         R"(<worksheet><sheetData><row r="1"><c r="A1" t="inlineStr"><is><t>inactive</t></is></c></row></sheetData></worksheet>)"},
        {"xl/worksheets/other.xml", activeSheetXml},
    };
}

class SpreadsheetTest : public ModuleTest {
protected:
    // Reads through ReadSpreadsheet and checks that a failure leaves the table empty.
    Table Read(const fs::path& path, const std::vector<SpreadsheetColumn>& columns,
               bool* ok = nullptr, std::wstring* error = nullptr) {
        SpreadsheetTable table{{L"stale"}};
        SpreadsheetError failure{IDS_SHEET_READER_MISSING, L"stale"};
        const bool read = ReadSpreadsheet(path.wstring(), columns, table, failure);
        if (ok) *ok = read;
        if (error) *error = SpreadsheetErrorText(failure);
        if (!read) {
            EXPECT_TRUE(table.empty());
        }
        return Flatten(table);
    }

    // The error text of a file the readers must refuse.
    std::wstring Refusal(const fs::path& path) {
        bool ok = true;
        std::wstring error;
        Read(path, Columns({L"A", L"B"}), &ok, &error);
        EXPECT_FALSE(ok) << path;
        return error;
    }

    ScopedTempDir m_temp{"vantor-sheet-"};
    const fs::path m_dir = m_temp.Path();
};
}  // namespace

TEST_F(SpreadsheetTest, ColumnADecidesTheRowsAndTheLimitOutlivesTheCall) {
    const fs::path book = m_dir / "rows.XLSX";
    WriteXlsx(book, [](lxw_workbook*, lxw_worksheet* sheet) {
        for (int row = 0; row < 5; ++row) {
            if (row != 3)
                worksheet_write_string(sheet, row, 0, ("part" + std::to_string(row + 1)).c_str(),
                                       nullptr);
            worksheet_write_string(sheet, row, 1, ("b" + std::to_string(row + 1)).c_str(), nullptr);
            if (row != 1)
                worksheet_write_string(sheet, row, 3, ("d" + std::to_string(row + 1)).c_str(),
                                       nullptr);
        }
    });
    // A4 is empty: three rows, D2 empty inside them, nothing of row 5.
    EXPECT_EQ(Read(book, Columns({L"A", L"D"})),
              (Table{{L"part1", L"part2", L"part3"}, {L"d1", L"", L"d3"}}));
    EXPECT_EQ(SpreadsheetRowLimit(), 5);
    // A later call without "A" keeps to the rows "A" allowed.
    EXPECT_EQ(Read(book, Columns({L"B"})), (Table{{L"b1", L"b2", L"b3"}}));
    // "A" requested after another column limits only what follows it; lower case counts as "A".
    EXPECT_EQ(Read(book, Columns({L"B", L"a"})),
              (Table{{L"b1", L"b2", L"b3"}, {L"part1", L"part2", L"part3"}}));

    const fs::path emptyA = m_dir / "empty_a.XLSX";
    WriteXlsx(emptyA, [](lxw_workbook*, lxw_worksheet* sheet) {
        worksheet_write_string(sheet, 0, 1, "b1", nullptr);
        worksheet_write_string(sheet, 1, 1, "b2", nullptr);
    });
    EXPECT_EQ(Read(emptyA, Columns({L"A", L"B"})), (Table{{}, {}}));
    EXPECT_EQ(SpreadsheetRowLimit(), 2);
    EXPECT_EQ(Read(emptyA, Columns({L"B"})), (Table{{}}));
    // A letter that names no column gives an empty list, not a failure.
    EXPECT_EQ(Read(emptyA, Columns({L"1"})), (Table{{}}));
}

TEST_F(SpreadsheetTest, NumbersStringsAndOtherCellTypes) {
    const fs::path book = m_dir / "cells.XLSX";
    WriteXlsx(book, WriteSharedSheet);
    std::vector<SpreadsheetColumn> columns = Columns({L"A", L"B", L"C", L"D", L"E", L"F"});
    std::vector<SpreadsheetColumn> decimals = columns;
    decimals[1].kind = decimals[2].kind = kSpreadsheetDecimalColumn;
    const Table plain = Read(book, columns);
    const Table decimal = Read(book, decimals);
    ASSERT_EQ(plain.size(), 6u);
    // Leading and trailing blanks go; the rest of the text stays as written.
    EXPECT_EQ(plain[0], (std::vector<std::wstring>{L"bolt.prt", L"nut.prt", L"washer.prt",
                                                   L"\u00fcn\u00efcode & <tags>"}));
    EXPECT_EQ(plain[1], (std::vector<std::wstring>{L"3", L"12", L"M8", L"-4"}));
    EXPECT_EQ(decimal[1], (std::vector<std::wstring>{L"3.0", L"12.0", L"M8", L"-4.0"}));
    EXPECT_EQ(plain[2], (std::vector<std::wstring>{L"2.5", L"0.125", L"100", L"0"}));
    EXPECT_EQ(decimal[2], (std::vector<std::wstring>{L"2.5", L"0.125", L"100.0", L"0.0"}));
    EXPECT_EQ(plain[3], (std::vector<std::wstring>{L"first", L"", L"third", L"x"}));
    // A date and a boolean read as empty texts.
    EXPECT_EQ(plain[4], (std::vector<std::wstring>{L"", L"", L"", L""}));
    EXPECT_EQ(plain[5], (std::vector<std::wstring>{L"", L"", L"", L""}));
}

TEST_F(SpreadsheetTest, TheSameSheetReadsAlikeFromXlsxAndXls) {
    const fs::path xlsx = m_dir / "shared.xlsx";
    WriteXlsx(xlsx, WriteSharedSheet);
    std::vector<SpreadsheetColumn> columns = Columns({L"A", L"B", L"C", L"D", L"E", L"F"});
    columns[2].kind = kSpreadsheetDecimalColumn;
    const Table fromLibrary = Read(xlsx, columns);
    ASSERT_EQ(fromLibrary.size(), 6u);
    ASSERT_EQ(fromLibrary[0].size(), 4u);
    EXPECT_EQ(fromLibrary[2][3], L"0.0");
    // The small workbook's stream lives in the compound file's mini stream; the large one's not.
    for (const char* name : {"shared_small.xls", "shared_large.xls"}) {
        EXPECT_EQ(Read(fs::path(VANTOR_SOURCE_DIR) / "tests/data" / name, columns), fromLibrary)
            << name;
    }
    // The same file through the built-in reader.
    fs::copy_file(xlsx, m_dir / "shared.XLSX");
    EXPECT_EQ(Read(m_dir / "shared.XLSX", columns), fromLibrary);
}

TEST_F(SpreadsheetTest, OnlyALowerCaseXlsxEndingGoesToTheReaderLibrary) {
    // The reader library reads Open XML only; the built-in reader goes by content.
    const fs::path biff = fs::path(VANTOR_SOURCE_DIR) / "tests/data/shared_small.xls";
    fs::copy_file(biff, m_dir / "biff.xlsx");
    fs::copy_file(biff, m_dir / "biff.XLSX");
    bool ok = true;
    std::wstring error;
    Read(m_dir / "biff.xlsx", Columns({L"A"}), &ok, &error);
    EXPECT_FALSE(ok);
    EXPECT_EQ(error, LoadLocalizedString(IDS_SHEET_NOT_READABLE));
    EXPECT_EQ(Read(m_dir / "biff.XLSX", Columns({L"A"}), &ok),
              (Table{{L"bolt.prt", L"nut.prt", L"washer.prt", L"\u00fcn\u00efcode & <tags>"}}));
    EXPECT_TRUE(ok);
    // The library's column "A" sets the module's row limit too.
    const fs::path xlsx = m_dir / "two.xlsx";
    WriteXlsx(xlsx, [](lxw_workbook*, lxw_worksheet* sheet) {
        worksheet_write_string(sheet, 0, 0, "a1", nullptr);
        worksheet_write_string(sheet, 1, 0, "a2", nullptr);
    });
    EXPECT_EQ(Read(xlsx, Columns({L"A"})), (Table{{L"a1", L"a2"}}));
    EXPECT_EQ(SpreadsheetRowLimit(), 4);
}

TEST_F(SpreadsheetTest, ActiveSheetSharedStringsAndCellsWithoutReferences) {
    WriteZip(
        m_dir / "hand.xlsx",
        HandWrittenPackage(
            R"(<worksheet xmlns="http://schemas.openxmlformats.org/spreadsheetml/2006/main"><sheetData>)"
            R"(<row r="1"><c t="s"><v>0</v></c><c t="inlineStr"><is><t> inline </t></is></c><c t="e"><v>#DIV/0!</v></c></row>)"
            R"(<row><c t="s"><v>1</v></c><c t="str"><v>formula text</v></c><c t="b"><v>1</v></c></row>)"
            R"(<row r="3"><c r="A3" t="s"><v>2</v></c><c r="C3"><v>7.25</v></c></row>)"
            R"(<row r="5"><c r="A5" t="inlineStr"><is><r><t>after</t></r><r><t> gap</t></r></is></c></row>)"
            R"(</sheetData></worksheet>)"));
    EXPECT_EQ(Read(m_dir / "hand.xlsx", Columns({L"A", L"B", L"C"})),
              (Table{{L"plain", L"rich text", L"tab\there & A"},
                     {L"inline", L"formula text", L""},
                     {L"", L"", L"7.25"}}));

    const fs::path second = m_dir / "second.xlsx";
    WriteXlsx(second, [](lxw_workbook* workbook, lxw_worksheet* first) {
        worksheet_write_string(first, 0, 0, "first sheet", nullptr);
        lxw_worksheet* other = workbook_add_worksheet(workbook, "Two");
        worksheet_write_string(other, 0, 0, "second sheet", nullptr);
        worksheet_write_string(other, 1, 0, "row 2", nullptr);
        worksheet_activate(other);
    });
    const Table expected{{L"second sheet", L"row 2"}};
    EXPECT_EQ(Read(second, Columns({L"A"})), expected);
    EXPECT_EQ(Read(fs::path(VANTOR_SOURCE_DIR) / "tests/data/second_active.xls", Columns({L"A"})),
              expected);
}

TEST_F(SpreadsheetTest, DamagedAndHostileFilesGiveTheErrorText) {
    const std::wstring notReadable = LoadLocalizedString(IDS_SHEET_NOT_READABLE);
    ASSERT_FALSE(notReadable.empty());
    EXPECT_EQ(Refusal(m_dir / "missing.xls"), notReadable);

    std::ofstream(m_dir / "text.xls") << "name;value\nbolt;3\n";
    EXPECT_EQ(Refusal(m_dir / "text.xls"), notReadable);
    std::ofstream(m_dir / "empty.xls").close();
    EXPECT_EQ(Refusal(m_dir / "empty.xls"), notReadable);

    // The first half of a good workbook, in both formats.
    const fs::path good = m_dir / "good.xlsx";
    WriteXlsx(good, WriteSharedSheet);
    const fs::path biff = fs::path(VANTOR_SOURCE_DIR) / "tests/data/shared_large.xls";
    for (const auto& [source, cut] :
         {std::pair{good, m_dir / "cut.XLSX"}, std::pair{biff, m_dir / "cut.xls"}}) {
        std::ifstream in(source, std::ios::binary);
        std::string bytes((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
        std::ofstream(cut, std::ios::binary) << bytes.substr(0, bytes.size() / 2);
        EXPECT_EQ(Refusal(cut), notReadable) << cut;
    }

    const std::string head =
        R"(<worksheet><sheetData><row r="1"><c r="A1" t="inlineStr"><is><t>x</t></is></c>)";
    const std::map<std::string, std::string> broken{
        {"unclosed", head + "</sheetData></worksheet>"},
        {"truncated", head + "</row></sheetData><"},
        {"two roots", head + "</row></sheetData></worksheet><worksheet/>"},
        {"doctype",
         "<!DOCTYPE worksheet [<!ENTITY a 'aaaa'>]>" + head + "</row></sheetData></worksheet>"},
        {"row out of range", R"(<worksheet><sheetData><row r="1048577"/></sheetData></worksheet>)"},
        {"cell out of range",
         R"(<worksheet><sheetData><row><c r="XFE1"/></row></sheetData></worksheet>)"},
        {"nested too deep", Repeat("<a>", 300) + Repeat("</a>", 300)},
    };
    for (const auto& [what, xml] : broken) {
        WriteZip(m_dir / "broken.XLSX", HandWrittenPackage(xml));
        EXPECT_EQ(Refusal(m_dir / "broken.XLSX"), notReadable) << what;
    }
    // No workbook part at all.
    WriteZip(m_dir / "nobook.XLSX", {{"_rels/.rels", kRootRels}});
    EXPECT_EQ(Refusal(m_dir / "nobook.XLSX"), notReadable);
}

namespace {
// Streams a sheet far larger than the reader's cap into a ZIP entry that stays small on disk.
// Elements of one mebibyte of blanks each: cheap to scan, so the cap is what stops the read.
char BombByte(uint64_t at) {
    const uint64_t offset = at % (1024 * 1024);
    if (offset < 3) return "<x>"[offset];
    if (offset >= 1024 * 1024 - 4) return "</x>"[offset - (1024 * 1024 - 4)];
    return ' ';
}

struct BombSource {
    uint64_t size;
    uint64_t position = 0;
};

zip_int64_t BombCallback(void* state, void* data, zip_uint64_t length, zip_source_cmd_t command) {
    static const std::string kHeader = "<worksheet><sheetData>";
    auto* bomb = static_cast<BombSource*>(state);
    switch (command) {
        case ZIP_SOURCE_OPEN:
        case ZIP_SOURCE_CLOSE:
        case ZIP_SOURCE_FREE:
            return 0;
        case ZIP_SOURCE_READ: {
            char* out = static_cast<char*>(data);
            const zip_uint64_t n = std::min<zip_uint64_t>(length, bomb->size - bomb->position);
            for (zip_uint64_t i = 0; i < n; ++i, ++bomb->position)
                out[i] = bomb->position < kHeader.size()
                             ? kHeader[bomb->position]
                             : BombByte(bomb->position - kHeader.size());
            return static_cast<zip_int64_t>(n);
        }
        case ZIP_SOURCE_STAT: {
            auto* st = static_cast<zip_stat_t*>(data);
            zip_stat_init(st);
            return sizeof(zip_stat_t);
        }
        case ZIP_SOURCE_ERROR:
            return 2 * sizeof(int);
        case ZIP_SOURCE_SUPPORTS:
            return zip_source_make_command_bitmap(ZIP_SOURCE_OPEN, ZIP_SOURCE_READ,
                                                  ZIP_SOURCE_CLOSE, ZIP_SOURCE_STAT,
                                                  ZIP_SOURCE_ERROR, ZIP_SOURCE_FREE, -1);
        default:
            return -1;
    }
}
}  // namespace

TEST_F(SpreadsheetTest, AZipBombStopsAtTheEntryCap) {
    const fs::path path = m_dir / "bomb.XLSX";
    WriteZip(path, HandWrittenPackage("<worksheet/>"));
    int error = 0;
    zip_t* zip = zip_open(path.c_str(), 0, &error);
    ASSERT_NE(zip, nullptr);
    BombSource bomb{600ull * 1024 * 1024};
    zip_source_t* source = zip_source_function(zip, BombCallback, &bomb);
    const zip_int64_t index =
        zip_file_add(zip, "xl/worksheets/other.xml", source, ZIP_FL_OVERWRITE);
    ASSERT_GE(index, 0);
    zip_set_file_compression(zip, static_cast<zip_uint64_t>(index), ZIP_CM_DEFLATE, 1);
    ASSERT_EQ(zip_close(zip), 0);
    ASSERT_LT(fs::file_size(path), 10u * 1024 * 1024);
    zip = zip_open(path.c_str(), ZIP_RDONLY, &error);
    zip_stat_t stat;
    ASSERT_EQ(zip_stat(zip, "xl/worksheets/other.xml", 0, &stat), 0);
    EXPECT_EQ(stat.size, 600ull * 1024 * 1024);
    zip_discard(zip);
    EXPECT_EQ(Refusal(path), LoadLocalizedString(IDS_SHEET_NOT_READABLE));
}

TEST_F(SpreadsheetTest, TextThatWidensPastTheCapIsRefused) {
    // One shared string of a million characters, named by many cells of a small sheet.
    const auto package = [](int rows) {
        std::map<std::string, std::string> parts = HandWrittenPackage(
            "<worksheet><sheetData>" + Repeat("<row><c t=\"s\"><v>0</v></c></row>", rows) +
            "</sheetData></worksheet>");
        parts["xl/sharedStrings.xml"] =
            "<sst><si><t>" + std::string(1 << 20, 'x') + "</t></si></sst>";
        return parts;
    };
    WriteZip(m_dir / "wide.XLSX", package(40));
    bool ok = true;
    std::wstring error;
    Read(m_dir / "wide.XLSX", Columns({L"A"}), &ok, &error);
    EXPECT_FALSE(ok);
    EXPECT_EQ(error, LoadLocalizedString(IDS_SHEET_NOT_READABLE));
    WriteZip(m_dir / "wide.XLSX", package(20));
    const Table within = Read(m_dir / "wide.XLSX", Columns({L"A"}), &ok);
    EXPECT_TRUE(ok);
    ASSERT_EQ(within.size(), 1u);
    EXPECT_EQ(within[0].size(), 20u);
}

TEST_F(SpreadsheetTest, RowsVariantAndEmptyColumnCheck) {
    const fs::path book = m_dir / "rows.XLSX";
    WriteXlsx(book, [](lxw_workbook*, lxw_worksheet* sheet) {
        worksheet_write_string(sheet, 0, 0, "a1", nullptr);
        worksheet_write_string(sheet, 1, 0, "a2", nullptr);
        worksheet_write_string(sheet, 0, 1, " b1 ", nullptr);
        worksheet_write_number(sheet, 2, 1, 5, nullptr);
    });
    SpreadsheetTable table;
    SpreadsheetError error;
    // Count 0: column "A" gives the count; the others are read untrimmed.
    ASSERT_TRUE(ReadSpreadsheetRows(book.wstring(), Columns({L"A", L"B", L"C"}), table, error, 0));
    EXPECT_EQ(Flatten(table), (Table{{L"a1", L"a2"}, {L" b1 ", L""}, {L"", L""}}));
    // A fixed count reads past the end of column "A".
    ASSERT_TRUE(ReadSpreadsheetRows(book.wstring(), Columns({L"B", L"A"}), table, error, 3));
    EXPECT_EQ(Flatten(table), (Table{{L" b1 ", L"", L"5"}, {L"a1", L"a2", L""}}));
    // A column that cannot be addressed fails the whole read, without a text.
    EXPECT_FALSE(ReadSpreadsheetRows(book.wstring(), Columns({L"A", L"B1"}), table, error, 2));
    EXPECT_TRUE(table.empty());
    EXPECT_TRUE(SpreadsheetErrorText(error).empty());

    std::wstring message;
    EXPECT_TRUE(CheckImportedColumns(SpreadsheetTable{{L"x"}, {L"y"}}, message));
    EXPECT_FALSE(CheckImportedColumns(SpreadsheetTable{{L"x"}, {}, {}}, message));
    EXPECT_NE(message.find(L"2, 3"), std::wstring::npos) << message;
    EXPECT_EQ(message.find(L"1"), std::wstring::npos) << message;
}

namespace {
// Runs `vantor-rules sheet ARGS`; returns its standard output and sets its exit status.
std::string RunSheetCommand(const std::string& args, int& status) {
    const std::string command = VANTOR_BUILD_DIR "/bin/vantor-rules sheet " + args + " 2>/dev/null";
    std::FILE* pipe = popen(command.c_str(), "r");
    std::string out;
    char buffer[256];
    while (pipe && std::fgets(buffer, sizeof buffer, pipe)) out += buffer;
    status = pipe ? WEXITSTATUS(pclose(pipe)) : -1;
    return out;
}
}  // namespace

TEST_F(SpreadsheetTest, SheetCommandPrintsRowsWithTabsOrTheError) {
    int status = -1;
    const std::string data = VANTOR_SOURCE_DIR "/tests/data/";
    EXPECT_EQ(RunSheetCommand(data + "shared_small.xls A B:4 D", status),
              "bolt.prt\t3.0\tfirst\nnut.prt\t12.0\t\nwasher.prt\tM8\tthird\n"
              "\xC3\xBCn\xC3\xAF"
              "code & <tags>\t-4.0\tx\n");
    EXPECT_EQ(status, 0);
    EXPECT_EQ(RunSheetCommand(data + "make_xls.js A", status), "");
    EXPECT_EQ(status, 2);
    RunSheetCommand(data + "shared_small.xls", status);
    EXPECT_EQ(status, 2);
}

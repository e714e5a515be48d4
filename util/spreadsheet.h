#pragma once

#include <cstdint>
#include <list>
#include <string>
#include <vector>

// One requested column: its letter ("A", "AB") and its kind; kind 4 marks decimal values.
struct SpreadsheetColumn {
    std::wstring letter;
    int32_t kind = 0;
};

constexpr int32_t kSpreadsheetDecimalColumn = 4;

// One list of texts per requested column, in request order.
using SpreadsheetTable = std::vector<std::list<std::wstring>>;

// Reads the requested columns of the workbook's active sheet. Paths ending in ".xlsx" go to the
// reader library; every other path to the built-in reader, which goes by the file's content.
// Column "A" decides how many rows are read and sets the row limit kept for later calls.
// On failure `error` holds the text to show (empty when the reader library is missing).
bool ReadSpreadsheet(const std::wstring& path, const std::vector<SpreadsheetColumn>& columns,
                     SpreadsheetTable& table, std::wstring& error);
// As ReadSpreadsheet, but with `rowCount` > 0 every column is read as rows 1 to `rowCount`,
// untrimmed; with 0 the first column is read as ReadSpreadsheet reads it and the texts it counted
// give the row count of the others.
bool ReadSpreadsheetRows(const std::wstring& path, const std::vector<SpreadsheetColumn>& columns,
                         SpreadsheetTable& table, std::wstring& error, int rowCount);
// False when a column came back empty; `message` then names the empty columns (1-based).
bool CheckImportedColumns(const SpreadsheetTable& table, std::wstring& message);

// The built-in reader: fills `table` as ReadSpreadsheet does, with `rowLimit` as the shared row
// limit. Returns 0, or the id of the error text. `openXmlOnly` refuses other formats (the reader
// library reads Open XML workbooks only).
unsigned ReadWorkbookTable(const std::wstring& path, const std::vector<SpreadsheetColumn>& columns,
                           SpreadsheetTable& table, int& rowLimit, bool openXmlOnly);

// The row limit shared by all reads of the module's lifetime (0 until column "A" was read).
int SpreadsheetRowLimit();

// The reader library's entry point.
using ReadExcelAndFillTableColByColFn = bool (*)(const std::wstring& path,
                                                 const std::vector<SpreadsheetColumn>& columns,
                                                 SpreadsheetTable& table, std::wstring& error);
constexpr const char* kSpreadsheetLibraryName = "ZEBCLRMangedHelper.so";
constexpr const char* kSpreadsheetEntryPoint = "ReadExcelAndFillTableColByCol";

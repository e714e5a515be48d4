#pragma once

#include <cstdint>
#include <list>
#include <string>
#include <vector>

#include "resources/string_ids.h"

// The columns of a workbook's active sheet read into lists of texts with the column "A" rule:
// what the module's spreadsheet import and the reader library share. Nothing here keeps state;
// the row limit is the caller's.

// One requested column: its letter ("A", "AB") and its kind; kind 4 marks decimal values.
struct SpreadsheetColumn {
    std::wstring letter;
    int32_t kind = 0;
};

constexpr int32_t kSpreadsheetDecimalColumn = 4;

// One list of texts per requested column, in request order.
using SpreadsheetTable = std::vector<std::list<std::wstring>>;

// Reads the requested columns with the built-in readers, which go by the file's content: Office
// Open XML, or BIFF unless `openXmlOnly`. Column "A" runs to its first empty cell and sets
// `rowLimit`; other columns stop at the limit, or at the sheet's last used row when it is 0.
// False with `error` naming the text to show when the workbook cannot be read.
bool ReadWorkbookTable(const std::wstring& path, const std::vector<SpreadsheetColumn>& columns,
                       SpreadsheetTable& table, int& rowLimit, bool openXmlOnly,
                       ZebStringId& error);
// As ReadWorkbookTable, but with `rowCount` > 0 every column is read as rows 1 to `rowCount`,
// untrimmed; with 0 the first column is read as ReadWorkbookTable reads it and the texts it
// counted give the row count of the others. A column that cannot be addressed fails the read
// without an error text.
bool ReadWorkbookRows(const std::wstring& path, const std::vector<SpreadsheetColumn>& columns,
                      SpreadsheetTable& table, int& rowLimit, int rowCount, ZebStringId& error);

// True for the column letter "A" in either case.
bool IsColumnA(const std::wstring& letter);

// The reader library's entry point.
using ReadExcelAndFillTableColByColFn = bool (*)(const std::wstring& path,
                                                 const std::vector<SpreadsheetColumn>& columns,
                                                 SpreadsheetTable& table, std::wstring& error);
constexpr const char* kSpreadsheetLibraryName = "ZEBCLRMangedHelper.so";
constexpr const char* kSpreadsheetEntryPoint = "ReadExcelAndFillTableColByCol";

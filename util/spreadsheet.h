#pragma once

#include <string>
#include <vector>

#include "resources/string_ids.h"
#include "util/sheet_table.h"

// Why a spreadsheet read failed: a string of the module's resources, or the reader library's own
// text. Both empty when the reader library is missing or gave no text.
struct SpreadsheetError {
    ZebStringId id{};
    std::wstring text;
};

// Reads the requested columns of the workbook's active sheet. Paths ending in ".xlsx" go to the
// reader library; every other path to the built-in reader, which goes by the file's content.
// Column "A" decides how many rows are read and sets the row limit kept for later calls.
bool ReadSpreadsheet(const std::wstring& path, const std::vector<SpreadsheetColumn>& columns,
                     SpreadsheetTable& table, SpreadsheetError& error);
// As ReadSpreadsheet, but with `rowCount` > 0 every column is read as rows 1 to `rowCount`,
// untrimmed; with 0 the first column is read as ReadSpreadsheet reads it and the texts it counted
// give the row count of the others.
bool ReadSpreadsheetRows(const std::wstring& path, const std::vector<SpreadsheetColumn>& columns,
                         SpreadsheetTable& table, SpreadsheetError& error, int rowCount);
// The text to show for a failed read, in the user's language; empty when there is none.
std::wstring SpreadsheetErrorText(const SpreadsheetError& error);

// False when a column came back empty; `message` then names the empty columns (1-based).
bool CheckImportedColumns(const SpreadsheetTable& table, std::wstring& message);

// The row limit shared by all reads of the module's lifetime (0 until column "A" was read).
int SpreadsheetRowLimit();

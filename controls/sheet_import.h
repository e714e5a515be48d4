#pragma once

#include <optional>
#include <string>
#include <vector>

#include "util/sheet_table.h"

class QWidget;

// The spreadsheet import the importing dialogs run on Ctrl+I.

// Asks for the workbook with the chooser every importing dialog shows (".xls" and ".xlsx",
// existing files only). False when the user cancels or names no file.
bool ChooseSpreadsheet(QWidget* parent, std::wstring& path);

// Reads `columns` of the workbook's active sheet: with the column "A" rule, or, given
// `rowCount`, as ReadSpreadsheetRows reads them. A failed read is shown (the reader's text,
// warning icon) and leaves the table empty.
bool ReadImportColumns(QWidget* parent, const std::wstring& path,
                       const std::vector<SpreadsheetColumn>& columns, SpreadsheetTable& table,
                       std::optional<int> rowCount = std::nullopt);

// False, after a message naming them (warning icon), when columns came back empty.
bool CheckImportNotEmpty(QWidget* parent, const SpreadsheetTable& table);

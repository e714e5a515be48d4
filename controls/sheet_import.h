#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "util/number_text.h"
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

// How the lengths of a workbook are taken into a table: converted from the unit the workbook
// records (a table export writes it) into the table's own.
struct SheetLengthConversion {
    int32_t from = 0;
    int32_t to = 0;
    double Apply(double value) const;
};
// The conversion a workbook needs, after telling the user of it (information icon); none when the
// workbook records no unit or the table's own.
std::optional<SheetLengthConversion> ConversionForSheet(QWidget* parent, const std::wstring& path,
                                                        int32_t tableUnit);

// A cell's text as a length in the table: read as typed values are (ReadNumberEntry), converted
// when a conversion is given, and written in the rules' number text. Empty texts stay empty.
NumberEntry ImportLength(const std::wstring& text,
                         const std::optional<SheetLengthConversion>& conversion);

// A value of a workbook that could not be taken: where it stood and why.
struct RefusedSheetValue {
    size_t row = 0;  // 1-based, as the spreadsheet numbers it
    std::wstring column;
    std::wstring text;
    NumberTextFault fault = NumberTextFault::NotNumber;
};
// The lines that name refused values, one per value: row, column, text and why.
std::vector<std::wstring> RefusedValueLines(const std::vector<RefusedSheetValue>& refused);
// Lists the refused values in one message (warning icon); nothing when there are none.
void ShowRefusedValues(QWidget* parent, const std::vector<RefusedSheetValue>& refused);

// False, after a message naming them (warning icon), when columns came back empty.
bool CheckImportNotEmpty(QWidget* parent, const SpreadsheetTable& table);

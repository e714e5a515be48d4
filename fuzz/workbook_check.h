#pragma once

#include <string>
#include <vector>

#include "framework/text_convert.h"
#include "fuzz/fuzz_support.h"
#include "util/sheet_table.h"

// Reads a workbook file as the spreadsheet import does, asking for columns A, B (decimal
// values), C and AB, and checks what a read hands the import: column "A" runs to its first empty
// cell and sets the row limit two past its last row, and every other column stops at that limit.
inline void ReadAndCheckWorkbook(const std::string& path, bool openXmlOnly) {
    static const std::vector<SpreadsheetColumn> columns = {
        {L"A", 0}, {L"B", kSpreadsheetDecimalColumn}, {L"C", 0}, {L"AB", 0}};
    SpreadsheetTable table;
    int rowLimit = 0;
    ZebStringId error{};
    if (!ReadWorkbookTable(FromUtf8(path), columns, table, rowLimit, openXmlOnly, error)) {
        FUZZ_CHECK(error != ZebStringId{});
        return;
    }
    FUZZ_CHECK(table.size() == columns.size());
    for (const std::wstring& text : table[0]) FUZZ_CHECK(!text.empty());
    if (rowLimit == 0) return;  // column "A" filled to the last row of the format
    FUZZ_CHECK(static_cast<size_t>(rowLimit) == table[0].size() + 2);
    for (size_t i = 1; i < table.size(); ++i) FUZZ_CHECK(table[i].size() == table[0].size());
}

#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "controls/grid_model.h"
#include "util/rule_params.h"
#include "util/sheet_table.h"

class CZEBListCtrl;
class QWidget;

// How one component table takes a spreadsheet on Ctrl+I. The tables differ only in what is read
// and in how many rows are emptied first; the import itself is ImportComponentTable.
struct ComponentImportLayout {
    // Requested in order; the i-th lands in table column i + 1.
    std::vector<SpreadsheetColumn> columns;
    // Rows emptied from the top: the largest entry count, at least `leastRows`, plus `rowsBelow`.
    // The table grows to hold them.
    int leastRows = 0;
    int rowsBelow = 0;
    // Every row emptied, also those below the emptied span.
    bool emptyEveryRow = false;
    // An empty name ends the import, which then reports no rows (the interference lists).
    bool stopAtEmptyName = false;
    // Read by rows (the first column's count gives the others'), not with the column "A" rule.
    bool readByRows = false;
    // The requested column that holds lengths (-1: none). Its values are read as typed values are
    // and converted from the unit the workbook records; values that cannot be read are listed,
    // logged under `logSuffix`, and end the import.
    int lengthColumn = -1;
    const wchar_t* logSuffix = L"";
};

// The spreadsheet columns of a table's cells, from "A" on; length cells are read as numbers.
std::vector<SpreadsheetColumn> SheetColumnsOf(const ParamColumns& cells);

// What a dialog keeps of its last import.
struct SheetImportState {
    std::wstring path;
    SpreadsheetTable columns;
};

// `rows` with `imported` placed as `layout` says, at least `leastEmptied` rows emptied from the
// top. `count` is the number of rows the import reports.
std::vector<CZebGridModel::Row> PlaceImportedColumns(std::vector<CZebGridModel::Row> rows,
                                                     const SpreadsheetTable& imported,
                                                     const ComponentImportLayout& layout,
                                                     int leastEmptied, int& count);

// Ctrl+I on a component table: commits its editor, asks for the workbook, reads and checks the
// columns (a failure is shown and leaves the table as it was), places them and reports the count
// (string 8093). Lengths come into `tableUnit`. False when nothing was imported.
bool ImportComponentTable(QWidget* parent, CZEBListCtrl& table, const ComponentImportLayout& layout,
                          SheetImportState& state, int leastEmptied = 0, int32_t tableUnit = 0);

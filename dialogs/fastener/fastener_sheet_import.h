#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "controls/grid_model.h"
#include "controls/sheet_import.h"
#include "util/sheet_table.h"

struct FastenerAdditions;
class QWidget;

// A cell that holds no number, in the merge of a sheet into a fastener table.
inline constexpr double kEmptyFastenerValue = -1e9;
// Most value cells a fastener table row has (the clearance table: Min and Max of two conditions).
inline constexpr int kMaxFastenerValues = 4;

// One layout a fastener sheet may have: the headings of columns A, B, ... ("F": the fastener
// name), and for each value cell of the table the column it is read from (-1: left empty).
struct FastenerSheetLayout {
    std::vector<std::wstring> headings;
    std::vector<int> valueColumns;
};

// One data row of a sheet, its cells found by their column's heading. A view on the cells the
// import holds.
class FastenerSheetRow {
public:
    FastenerSheetRow(const FastenerSheetLayout& layout, const std::wstring* cells)
        : m_layout(&layout), m_cells(cells) {}
    const std::wstring& Name() const { return m_cells[0]; }
    // Empty for a heading the layout does not have.
    const std::wstring& Under(const std::wstring& heading) const;
    const std::wstring& At(int column) const;

private:
    const FastenerSheetLayout* m_layout;
    const std::wstring* m_cells;
};

// What tells the fastener tables apart on import; the steps are the same for all of them.
struct FastenerTableKind {
    // The layouts of the first fastener-name list, tried in order; the second list reads an "N"
    // column after the last heading.
    std::vector<FastenerSheetLayout> layouts;
    // Value cells after the name in a table row, at most kMaxFastenerValues.
    int valueCount = 0;
    // A row the table cannot take: it is logged and ends the import.
    std::function<bool(const FastenerSheetRow&)> rowBlocks;
    // How an empty cell reads in the merge: as an empty cell, or as the number 0.
    bool emptyReadsAsZero = false;
    // The log's name after the sheet's base name.
    std::wstring logSuffix;
};

// The spreadsheet import of a fastener table, in its steps. The dialog runs them in its own order
// and does what lies between them itself; each returns false when the import ends there, after
// the user was told why.
class CFastenerSheetImport {
public:
    CFastenerSheetImport(const FastenerTableKind& kind, bool secondList)
        : m_kind(kind), m_secondList(secondList) {}
    CFastenerSheetImport(const CFastenerSheetImport&) = delete;
    CFastenerSheetImport& operator=(const CFastenerSheetImport&) = delete;

    // Asks for the workbook and reads it: a layout must match its heading row (8160), and with
    // the second list every named row needs its "N" value (8161). Lengths of a workbook in
    // another unit than `tableUnit` are converted, and the user told so.
    bool Read(QWidget* parent, int32_t tableUnit);
    // Logs the rows that block the import (8970), the names given twice (8971) and the values that
    // cannot be read. Blocking rows end the import after the error dialog, values that cannot be
    // read after a message listing them; repeated names go on when the user confirms.
    bool CheckRows(QWidget* parent);
    // Merges the sheet into the table rows, keyed by the upper-case fastener name: the rows down
    // to the first without a name, then the sheet's rows, a sheet row replacing an entry of its
    // name once the user has confirmed that. The table gets the merged entries in name order at
    // the top, the rows they came from emptied below them. The imported names (or thread texts
    // with their names, for the second list) are recorded for the database. When the user
    // declines, the rows and the records stay as they were.
    bool MergeInto(QWidget* parent, std::vector<CZebGridModel::Row>& rows,
                   FastenerAdditions& additions);

    const std::wstring& GetPath() const { return m_path; }
    const std::wstring& GetLogPath() const { return m_logPath; }

private:
    size_t RowCount() const { return m_width ? m_cells.size() / m_width : 0; }
    FastenerSheetRow Row(size_t row) const {
        return FastenerSheetRow(m_layout, &m_cells[row * m_width]);
    }
    // The error dialog over the log; true when the user leaves it with OK.
    bool ShowLog(QWidget* parent, bool isWarning) const;
    // A value cell of the table (already in its unit) or of the sheet (converted).
    double CellNumber(const std::wstring& text, bool fromSheet) const;
    std::vector<RefusedSheetValue> RefusedValues() const;

    const FastenerTableKind& m_kind;
    bool m_secondList;
    std::wstring m_path;
    std::wstring m_logPath;
    FastenerSheetLayout m_layout;
    // The data rows' cells, row after row, `m_width` (the layout's headings) to a row.
    std::vector<std::wstring> m_cells;
    size_t m_width = 0;
    bool m_confirmed = false;
    std::optional<SheetLengthConversion> m_conversion;
};

#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

// What the workbook readers hand on: the cells of the requested columns of the active sheet.

// Largest sheet the readers accept: the rows and columns of the biggest workbook format.
constexpr uint32_t kMaxSheetRows = 1048576;
constexpr uint32_t kMaxSheetColumns = 16384;

enum class CellKind {
    Empty,
    Number,  // `number` holds the value
    Text,    // `text` holds UTF-8
    Other,   // boolean, date, error: shown as an empty text
};

// Receives cells; `column` and `row` are 0-based, cells of a column come in no fixed order.
class CSheetCellSink {
public:
    virtual ~CSheetCellSink() = default;
    virtual void Cell(uint32_t column, uint32_t row, CellKind kind, double number,
                      std::string_view text) = 0;
};

enum class SheetReadStatus {
    Ok,
    NotReadable,  // not a workbook these readers know, damaged, or no sheet
    CannotStart,  // the reader could not be set up (memory, temporary copy)
};

// Which columns a reader delivers: wanted[c] for 0-based column c.
struct SheetRequest {
    std::vector<bool> wanted;
    bool Wants(uint32_t column) const { return column < wanted.size() && wanted[column]; }
};

// Result of a read besides the cells: rows used by the sheet (the last row holding any cell).
struct SheetExtent {
    uint32_t usedRows = 0;
};

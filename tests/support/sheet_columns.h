#pragma once

#include <initializer_list>
#include <vector>

#include "util/sheet_table.h"

// The columns of a read by their letters, each of the plain kind.
inline std::vector<SpreadsheetColumn> Columns(std::initializer_list<const wchar_t*> letters) {
    std::vector<SpreadsheetColumn> columns;
    for (const wchar_t* letter : letters) columns.push_back({letter, 0});
    return columns;
}

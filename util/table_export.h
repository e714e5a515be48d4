#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

class CZebRule;

// The rule tables that a dialog fills from a spreadsheet, each written back in exactly the layout
// its import reads, so that an exported sheet imports again into the same table.
enum class TableSheetKind {
    PartPairs,            // minimum clearance: part, part, clearance in A, B, C; no heading row
    ComponentsToCheck,    // interference detection: two components in A and B; no heading row
    PreferredComponents,  // description, preferred, alternative, replaced in A to D; no heading row
    FastenerClearance,    // heading row F, A, A1, B, B1: name, then Min and Max of both conditions
    FastenerEngagement,   // heading row F, A: name and engagement length
};

using TextRows = std::vector<std::vector<std::wstring>>;

struct TableSheet {
    // The sheet's rows from row 1, the heading row first where the import expects one.
    TextRows rows;
    // Table rows with entries that were not written because the import could not read them back:
    // an empty first cell ends its read, and a fastener row without the values it needs ends the
    // whole import.
    size_t leftOut = 0;
    // The length unit of the values, for the tables that hold lengths; recorded in the workbook's
    // properties, where the import finds it and other spreadsheets see no change of layout.
    std::optional<int32_t> lengthUnit;
};

// The custom document property that holds a table's length unit code.
inline constexpr const char* kSheetLengthUnitProperty = "Vantor.LengthUnit";

// The sheet of a table. `table` holds the rows as the dialog shows them, from the first data
// column on (the component tables' marker column left out). Empty rows are dropped. `lengthUnit`
// is kept for the kinds that hold lengths.
TableSheet TableToSheet(TableSheetKind kind, const TextRows& table,
                        std::optional<int32_t> lengthUnit = std::nullopt);
bool HoldsLengths(TableSheetKind kind);

// The kind of table `rule` keeps, found by its parameters; none for a rule without one.
std::optional<TableSheetKind> RuleTableKind(CZebRule& rule);
// The rows the rule's dialog opens its table with, in the same column order as TableToSheet takes.
TextRows StoredTableRows(CZebRule& rule, TableSheetKind kind);

// The sheet of the rule's stored table, with the rule's length unit.
TableSheet RuleTableSheet(CZebRule& rule, TableSheetKind kind);

// Writes `rows` as text cells into the only sheet of a new ".xlsx" workbook at `path`. The
// workbook is written under a hidden temporary name in the target's folder and renamed into
// place, so a failure leaves no file behind and an existing one as it was. False with `error`
// saying why.
bool WriteSheetFile(const std::wstring& path, const TextRows& rows, std::wstring& error,
                    std::optional<int32_t> lengthUnit = std::nullopt);
// The sheet's rows with its length unit.
bool WriteSheetFile(const std::wstring& path, const TableSheet& sheet, std::wstring& error);
// The length unit a workbook written by WriteSheetFile records; none for other workbooks.
std::optional<int32_t> ReadSheetLengthUnit(const std::wstring& path);

#include "util/table_export.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#include <xlsxwriter.h>

#include <algorithm>
#include <cerrno>
#include <charconv>
#include <cstring>

#include "framework/file_beside.h"
#include "framework/param_storage.h"
#include "framework/text_convert.h"
#include "framework/zeb_rule.h"
#include "util/number_text.h"
#include "util/open_xml_reader.h"
#include "util/rule_params.h"
#include "util/string_table.h"

namespace {
constexpr long kPartPairs = MinClearanceParams::kPairs.id;
constexpr long kComponentsToCheck = InterferenceParams::kComponents.id;
constexpr long kComponentGroups = InterferenceParams::kGroups.id;
constexpr long kPreferredTable = PrefCompParams::kTable.id;
constexpr long kClearanceA = FastenerClearanceParams::kConditionA.id;
constexpr long kClearanceB = FastenerClearanceParams::kConditionB.id;
constexpr long kEngagementLengths = FastenerEngagementParams::kLengths.id;

// The heading rows the fastener import matches its layouts by; the clearance one is the layout
// that carries both conditions with their Max.
const std::vector<std::wstring> kClearanceHeadings{L"F", L"A", L"A1", L"B", L"B1"};
const std::vector<std::wstring> kEngagementHeadings{L"F", L"A"};

const std::wstring kNoText;

const std::wstring& CellOf(const std::vector<std::wstring>& row, size_t column) {
    return column < row.size() ? row[column] : kNoText;
}

bool IsBlank(const std::wstring& text) { return TrimBlanks(text).empty(); }

template <class T>
ZebTypedParam<T>* Typed(CZebRule& rule, long id) {
    CZebParamStorage* p = rule.FindParameterInArray(id);
    return p ? p->As<T>() : nullptr;
}

// Whether the import reads the row back. Empty rows are not counted as left out.
enum class RowFate { Written, Empty, LeftOut };

RowFate FateOf(TableSheetKind kind, const std::vector<std::wstring>& row, size_t width) {
    bool any = false;
    for (size_t c = 0; c < width; ++c) any = any || !IsBlank(CellOf(row, c));
    if (!any) return RowFate::Empty;
    // A fastener row without a name is not part of the rule: the dialog stores only named rows.
    const bool fastener =
        kind == TableSheetKind::FastenerClearance || kind == TableSheetKind::FastenerEngagement;
    if (fastener && IsBlank(CellOf(row, 0))) return RowFate::Empty;
    // Every import reads down to the first empty cell in column "A" (cells are trimmed).
    if (IsBlank(CellOf(row, 0))) return RowFate::LeftOut;
    switch (kind) {
        case TableSheetKind::PartPairs:
            // A pair without its second part is refused by the dialog and dropped when it opens.
            return IsBlank(CellOf(row, 1)) ? RowFate::LeftOut : RowFate::Written;
        case TableSheetKind::ComponentsToCheck:
            // An empty name anywhere ends that import with nothing taken.
            return IsBlank(CellOf(row, 1)) ? RowFate::LeftOut : RowFate::Written;
        case TableSheetKind::PreferredComponents:
            return RowFate::Written;
        case TableSheetKind::FastenerClearance:
            // A row without either Min blocks the whole import.
            return IsBlank(CellOf(row, 1)) && IsBlank(CellOf(row, 3)) ? RowFate::LeftOut
                                                                      : RowFate::Written;
        case TableSheetKind::FastenerEngagement:
            // An empty or non-numeric length blocks the whole import.
            return !IsBlank(CellOf(row, 1)) && IsNumericText(TrimBlanks(CellOf(row, 1)))
                       ? RowFate::Written
                       : RowFate::LeftOut;
    }
    return RowFate::LeftOut;
}

size_t WidthOf(TableSheetKind kind) {
    switch (kind) {
        case TableSheetKind::PartPairs:
            return MinClearanceParams::kPairs.columns.count;
        case TableSheetKind::ComponentsToCheck:
            return InterferenceParams::kComponents.columns.count;
        case TableSheetKind::PreferredComponents:
            return PrefCompParams::kTable.columns.count;
        case TableSheetKind::FastenerClearance:
            return kClearanceHeadings.size();
        case TableSheetKind::FastenerEngagement:
            return kEngagementHeadings.size();
    }
    return 0;
}

std::string ErrnoText(int error) { return std::strerror(error); }
}  // namespace

bool HoldsLengths(TableSheetKind kind) {
    return kind == TableSheetKind::PartPairs || kind == TableSheetKind::FastenerClearance ||
           kind == TableSheetKind::FastenerEngagement;
}

TableSheet TableToSheet(TableSheetKind kind, const TextRows& table,
                        std::optional<int32_t> lengthUnit) {
    TableSheet sheet;
    if (HoldsLengths(kind)) sheet.lengthUnit = lengthUnit;
    if (kind == TableSheetKind::FastenerClearance) sheet.rows.push_back(kClearanceHeadings);
    if (kind == TableSheetKind::FastenerEngagement) sheet.rows.push_back(kEngagementHeadings);
    const size_t width = WidthOf(kind);
    for (const std::vector<std::wstring>& row : table) {
        switch (FateOf(kind, row, width)) {
            case RowFate::Empty:
                break;
            case RowFate::LeftOut:
                ++sheet.leftOut;
                break;
            case RowFate::Written: {
                std::vector<std::wstring> cells(width);
                for (size_t c = 0; c < width; ++c) cells[c] = CellOf(row, c);
                sheet.rows.push_back(std::move(cells));
                break;
            }
        }
    }
    return sheet;
}

std::optional<TableSheetKind> RuleTableKind(CZebRule& rule) {
    if (Typed<ZebRow>(rule, kClearanceA) && Typed<ZebRow>(rule, kClearanceB))
        return TableSheetKind::FastenerClearance;
    if (Typed<ZebRow>(rule, kEngagementLengths)) return TableSheetKind::FastenerEngagement;
    if (Typed<ZebRow>(rule, kPartPairs)) return TableSheetKind::PartPairs;
    if (Typed<ZebRow>(rule, kComponentsToCheck)) return TableSheetKind::ComponentsToCheck;
    if (Typed<std::wstring>(rule, kPreferredTable)) return TableSheetKind::PreferredComponents;
    return std::nullopt;
}

TextRows StoredTableRows(CZebRule& rule, TableSheetKind kind) {
    TextRows rows;
    switch (kind) {
        case TableSheetKind::PartPairs:
            if (const auto* pairs = Typed<ZebRow>(rule, kPartPairs))
                for (const ZebRow& row : pairs->values)
                    if (row.size() >= MinClearanceParams::kPairs.columns.count && !row[0].empty() &&
                        !row[1].empty())
                        rows.push_back({row.Cell(0), row.Cell(1), row.Cell(2)});
            break;
        case TableSheetKind::ComponentsToCheck:
            if (const auto* components = Typed<ZebRow>(rule, kComponentsToCheck)) {
                const auto* groups = Typed<bool>(rule, kComponentGroups);
                const bool asGroups = groups && !groups->values.IsEmpty() && groups->values[0];
                for (const ZebRow& row : components->values) {
                    if (row.size() < InterferenceParams::kComponents.columns.count ||
                        (!asGroups && (row[0].empty() || row[1].empty())))
                        continue;
                    rows.push_back({row.Cell(0), row.Cell(1)});
                }
            }
            break;
        case TableSheetKind::PreferredComponents:
            if (const auto* text = Typed<std::wstring>(rule, kPreferredTable);
                text && !text->values.IsEmpty()) {
                std::vector<StringTableRow> records;
                CZEBStringTableParser::Parse(text->values[0], records);
                for (const StringTableRow& r : records)
                    rows.push_back({r.Col1, r.Col2, r.Col3, r.Col4});
            }
            break;
        case TableSheetKind::FastenerClearance: {
            const auto* a = Typed<ZebRow>(rule, kClearanceA);
            const auto* b = Typed<ZebRow>(rule, kClearanceB);
            if (!a || !b) break;
            for (int32_t i = 0; i < a->values.GetSize() && i < b->values.GetSize(); ++i) {
                const ZebRow& first = a->values[i];
                const ZebRow& second = b->values[i];
                const size_t cells = FastenerClearanceParams::kConditionA.columns.count;
                if (first.size() < cells || second.size() < cells || first[0].empty()) continue;
                rows.push_back(
                    {first.Cell(0), first.Cell(1), first.Cell(2), second.Cell(1), second.Cell(2)});
            }
            break;
        }
        case TableSheetKind::FastenerEngagement:
            if (const auto* lengths = Typed<ZebRow>(rule, kEngagementLengths))
                for (const ZebRow& row : lengths->values)
                    if (row.size() >= FastenerEngagementParams::kLengths.columns.count &&
                        !row[0].empty())
                        rows.push_back({row.Cell(0), row.Cell(1)});
            break;
    }
    return rows;
}

TableSheet RuleTableSheet(CZebRule& rule, TableSheetKind kind) {
    return TableToSheet(kind, StoredTableRows(rule, kind), rule.CurrentUnits.LengthUnit);
}

bool WriteSheetFile(const std::wstring& path, const TableSheet& sheet, std::wstring& error) {
    return WriteSheetFile(path, sheet.rows, error, sheet.lengthUnit);
}

std::optional<int32_t> ReadSheetLengthUnit(const std::wstring& path) {
    const std::string text = ReadOpenXmlCustomProperty(ToUtf8(path), kSheetLengthUnitProperty);
    int32_t unit = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), unit);
    if (text.empty() || error != std::errc() || end != text.data() + text.size())
        return std::nullopt;
    return unit;
}

bool WriteSheetFile(const std::wstring& path, const TextRows& rows, std::wstring& error,
                    std::optional<int32_t> lengthUnit) {
    const std::string target = ToUtf8(path);
    // The hidden name is taken exclusively first, so no other file is ever written over; the
    // workbook writer then replaces it.
    std::string temp;
    const int fd = ZebOpenFileBeside(target, 0666, temp);
    if (fd < 0) {
        error = L"cannot write beside " + path + L": " + FromUtf8(ErrnoText(errno));
        return false;
    }
    ::close(fd);

    auto fail = [&](const std::string& why) {
        ::unlink(temp.c_str());
        error = L"cannot write " + path + L": " + FromUtf8(why);
        return false;
    };
    lxw_workbook* workbook = workbook_new(temp.c_str());
    if (!workbook) return fail("the workbook could not be started");
    lxw_worksheet* sheet = workbook_add_worksheet(workbook, nullptr);
    lxw_error written = sheet ? LXW_NO_ERROR : LXW_ERROR_MEMORY_MALLOC_FAILED;
    if (written == LXW_NO_ERROR && lengthUnit)
        written =
            workbook_set_custom_property_integer(workbook, kSheetLengthUnitProperty, *lengthUnit);
    // Every cell is a text cell: the import reads a text back exactly as written, while a number
    // cell would come back in the reader's own number text ("3.0" in a decimal column).
    for (size_t r = 0; r < rows.size() && written == LXW_NO_ERROR; ++r) {
        if (r >= LXW_ROW_MAX) {
            written = LXW_ERROR_WORKSHEET_INDEX_OUT_OF_RANGE;
            break;
        }
        for (size_t c = 0; c < rows[r].size() && written == LXW_NO_ERROR; ++c) {
            if (rows[r][c].empty()) continue;
            written =
                worksheet_write_string(sheet, static_cast<lxw_row_t>(r), static_cast<lxw_col_t>(c),
                                       ToUtf8(rows[r][c]).c_str(), nullptr);
        }
    }
    const lxw_error closed = workbook_close(workbook);
    if (written != LXW_NO_ERROR) return fail(lxw_strerror(written));
    if (closed != LXW_NO_ERROR) return fail(lxw_strerror(closed));
    if (std::rename(temp.c_str(), target.c_str()) != 0) return fail(ErrnoText(errno));
    return true;
}

#include "util/sheet_table.h"

#include <cwctype>

#include "framework/case_fold.h"
#include "framework/text_convert.h"
#include "util/biff_reader.h"
#include "util/number_text.h"
#include "util/open_xml_reader.h"

namespace {
// Most characters one read collects (the 100,000-row benchmark sheet needs about 10 Mi): a shared
// string named by many cells, or a number written out, turns a few bytes of sheet into much text.
constexpr size_t kMaxCollectedChars = 32u * 1024 * 1024;

// 0-based index of a column letter, or -1 when the letter names no column of a sheet.
int ColumnIndex(const std::wstring& letter) {
    if (letter.empty() || letter.size() > 3) return -1;
    int index = 0;
    for (wchar_t c : letter) {
        const wchar_t upper = static_cast<wchar_t>(std::towupper(c));
        if (upper < L'A' || upper > L'Z') return -1;
        index = index * 26 + (upper - L'A' + 1);
    }
    return index <= static_cast<int>(kMaxSheetColumns) ? index - 1 : -1;
}

bool EndsWith(const std::wstring& text, const std::wstring& tail) {
    return !tail.empty() && text.size() >= tail.size() &&
           text.compare(text.size() - tail.size(), tail.size(), tail) == 0;
}

// Texts of one requested column, kept in one pool so that a large sheet costs no allocation per
// cell before the table is built.
struct CollectedColumn {
    std::wstring pool;
    // Start and length in the pool, by 0-based row.
    std::vector<std::pair<uint32_t, uint32_t>> spans;

    std::wstring At(uint32_t row) const {
        if (row >= spans.size()) return {};
        std::wstring text(pool, spans[row].first, spans[row].second);
        if (!text.empty() && (std::iswspace(text.front()) || std::iswspace(text.back())))
            return TrimBlanks(text);
        return text;
    }
    std::wstring Untrimmed(uint32_t row) const {
        return row < spans.size() ? std::wstring(pool, spans[row].first, spans[row].second)
                                  : std::wstring();
    }
};

// ASCII is widened in place; anything else goes through the framework's conversion.
void AppendUtf8Text(std::wstring& out, std::string_view text) {
    for (size_t i = 0; i < text.size(); ++i) {
        if (static_cast<unsigned char>(text[i]) >= 0x80) {
            out += FromUtf8(text.substr(i));
            return;
        }
        out += static_cast<wchar_t>(text[i]);
    }
}

// Collects the texts of the requested columns by row, converted as each column's kind asks.
class ColumnCollector : public CSheetCellSink {
public:
    explicit ColumnCollector(const std::vector<SpreadsheetColumn>& columns)
        : m_columns(columns), m_collected(columns.size()), m_separator(UserDecimalSeparator()) {
        m_request.wanted.assign(kMaxSheetColumns, false);
        m_slotsOfColumn.resize(kMaxSheetColumns);
        for (size_t i = 0; i < columns.size(); ++i) {
            const int index = ColumnIndex(columns[i].letter);
            if (index < 0) continue;
            m_request.wanted[index] = true;
            m_slotsOfColumn[index].push_back(i);
        }
    }

    const SheetRequest& Request() const { return m_request; }
    CollectedColumn& Collected(size_t slot) { return m_collected[slot]; }
    bool TooLarge() const { return m_collectedChars > kMaxCollectedChars; }

    void Cell(uint32_t column, uint32_t row, CellKind kind, double number,
              std::string_view text) override {
        if (column >= m_slotsOfColumn.size() || TooLarge()) return;
        for (size_t slot : m_slotsOfColumn[column]) {
            CollectedColumn& collected = m_collected[slot];
            if (collected.spans.size() <= row) collected.spans.resize(row + 1);
            const size_t start = collected.pool.size();
            AppendCellText(collected.pool, kind, number, text, m_columns[slot].kind);
            const size_t length = collected.pool.size() - start;
            collected.spans[row] = {static_cast<uint32_t>(start), static_cast<uint32_t>(length)};
            m_collectedChars += length;
        }
    }

private:
    void AppendCellText(std::wstring& out, CellKind kind, double number, std::string_view text,
                        int32_t columnKind) const {
        if (kind == CellKind::Text) {
            AppendUtf8Text(out, text);
        } else if (kind == CellKind::Number && columnKind == kSpreadsheetDecimalColumn) {
            out += FormatTrimmedNumber(number, m_separator);
        } else if (kind == CellKind::Number) {
            // Plain columns show whole numbers without a decimal point: 12.0 reads as 12.
            std::wstring plain = FormatFixedTrimmed(number);
            if (EndsWith(plain, m_separator))
                while (!plain.empty() && plain.back() == L'.') plain.pop_back();
            out += plain;
        }
    }

    const std::vector<SpreadsheetColumn>& m_columns;
    std::vector<CollectedColumn> m_collected;  // by request slot
    std::vector<std::vector<size_t>> m_slotsOfColumn;
    SheetRequest m_request;
    std::wstring m_separator;
    size_t m_collectedChars = 0;
};

// One column read the usual way: column "A" runs to its first empty cell and sets the row limit;
// other columns stop where the limit says, or at the sheet's last used row when there is none.
std::list<std::wstring> TakeColumn(const SpreadsheetColumn& column, const CollectedColumn& cells,
                                   uint32_t usedRows, int& rowLimit) {
    std::list<std::wstring> texts;
    if (ColumnIndex(column.letter) < 0) return texts;
    const bool isA = IsColumnA(column.letter);
    for (uint32_t row = 1; row <= kMaxSheetRows; ++row) {
        const int64_t advanced = int64_t(row) + 1;
        std::wstring text = cells.At(row - 1);
        if (isA) {
            if (text.empty()) {
                rowLimit = static_cast<int>(advanced);
                break;
            }
        } else if (rowLimit != 0 ? advanced >= rowLimit : row > usedRows) {
            break;
        }
        texts.push_back(std::move(text));
    }
    return texts;
}

// Rows 1 to `count` of one column, untrimmed; false when the column cannot be addressed.
bool TakeFixedRun(const SpreadsheetColumn& column, const CollectedColumn& cells, int count,
                  std::list<std::wstring>& texts) {
    if (ColumnIndex(column.letter) < 0 || count > static_cast<int>(kMaxSheetRows)) return false;
    for (int row = 0; row < count; ++row)
        texts.push_back(cells.Untrimmed(static_cast<uint32_t>(row)));
    return true;
}

// Reads the requested columns' cells; 0 or the id of the error text.
ZebStringId CollectCells(const std::wstring& path, bool openXmlOnly, ColumnCollector& collector,
                         SheetExtent& extent) {
    const std::string file = ToUtf8(path);
    SheetReadStatus status = SheetReadStatus::NotReadable;
    if (LooksLikeZip(file))
        status = ReadOpenXmlSheet(file, collector.Request(), collector, extent);
    else if (!openXmlOnly && LooksLikeCompoundFile(file))
        status = ReadBiffSheet(file, collector.Request(), collector, extent);
    switch (status) {
        case SheetReadStatus::Ok:
            return collector.TooLarge() ? IDS_SHEET_NOT_READABLE : ZebStringId{};
        case SheetReadStatus::CannotStart:
            return IDS_SHEET_READER_NOT_STARTED;
        default:
            return IDS_SHEET_NOT_READABLE;
    }
}

}  // namespace

bool IsColumnA(const std::wstring& letter) { return ZebEqualsNoCase(letter, L"A"); }

bool ReadWorkbookTable(const std::wstring& path, const std::vector<SpreadsheetColumn>& columns,
                       SpreadsheetTable& table, int& rowLimit, bool openXmlOnly,
                       ZebStringId& error) {
    table.clear();
    ColumnCollector collector(columns);
    SheetExtent extent;
    error = CollectCells(path, openXmlOnly, collector, extent);
    if (error) return false;
    for (size_t i = 0; i < columns.size(); ++i) {
        table.push_back(TakeColumn(columns[i], collector.Collected(i), extent.usedRows, rowLimit));
        collector.Collected(i) = {};
    }
    return true;
}

bool ReadWorkbookRows(const std::wstring& path, const std::vector<SpreadsheetColumn>& columns,
                      SpreadsheetTable& table, int& rowLimit, int rowCount, ZebStringId& error) {
    table.clear();
    ColumnCollector collector(columns);
    SheetExtent extent;
    error = CollectCells(path, false, collector, extent);
    if (error) return false;
    for (size_t i = 0; i < columns.size(); ++i) {
        if (rowCount == 0 && i == 0) {
            table.push_back(
                TakeColumn(columns[0], collector.Collected(0), extent.usedRows, rowLimit));
            rowCount = IsColumnA(columns[0].letter) ? static_cast<int>(table[0].size()) : 0;
            continue;
        }
        std::list<std::wstring> texts;
        if (!TakeFixedRun(columns[i], collector.Collected(i), rowCount, texts)) {
            table.clear();
            return false;
        }
        table.push_back(std::move(texts));
    }
    return true;
}

// The string-table codec that keeps the preferred components table in one parameter. Any stored
// text reads as rows that write back to a text reading as the same rows; rows made of any fields
// without the tags come back unchanged after writing and reading.
#include <string>
#include <vector>

#include "framework/text_convert.h"
#include "fuzz/fuzz_support.h"
#include "util/string_table.h"

namespace {
bool HoldsTag(const std::wstring& field) {
    return field.find(CZEBStringTableParser::kTabTag) != std::wstring::npos ||
           field.find(CZEBStringTableParser::kEndLineTag) != std::wstring::npos;
}

// The input's lines as fields, four to a row; an incomplete last row is left out.
std::vector<StringTableRow> RowsOfLines(const std::wstring& text) {
    std::vector<std::wstring> fields;
    size_t start = 0;
    for (size_t end; (end = text.find(L'\n', start)) != std::wstring::npos; start = end + 1)
        fields.push_back(text.substr(start, end - start));
    fields.push_back(text.substr(start));
    std::vector<StringTableRow> rows;
    for (size_t i = 0; i + 4 <= fields.size(); i += 4)
        rows.push_back({fields[i], fields[i + 1], fields[i + 2], fields[i + 3]});
    return rows;
}
}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const std::wstring text = FromUtf8(Bytes(data, size));

    std::vector<StringTableRow> stored;
    CZEBStringTableParser::Parse(text, stored);
    std::vector<StringTableRow> reread;
    CZEBStringTableParser::Parse(CZEBStringTableParser::Compose(stored), reread);
    FUZZ_CHECK(reread == stored);
    int row = -1;
    int column = -1;
    if (!CZEBStringTableParser::Validate(stored, row, column))
        FUZZ_CHECK(row >= 0 && static_cast<size_t>(row) < stored.size() &&
                   (column == 2 || column == 3));

    const std::vector<StringTableRow> made = RowsOfLines(text);
    for (const StringTableRow& r : made)
        if (HoldsTag(r.Col1) || HoldsTag(r.Col2) || HoldsTag(r.Col3) || HoldsTag(r.Col4)) return 0;
    std::vector<StringTableRow> back;
    CZEBStringTableParser::Parse(CZEBStringTableParser::Compose(made), back);
    FUZZ_CHECK(back == made);
    return 0;
}

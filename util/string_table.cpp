#include "util/string_table.h"

#include "util/component_names.h"

namespace {
const std::wstring kTab = CZEBStringTableParser::kTabTag;
const std::wstring kEndLine = CZEBStringTableParser::kEndLineTag;

bool SameComponent(const std::wstring& a, const std::wstring& b) {
    return !ComponentNamesDiffer(a, b);
}
}  // namespace

void CZEBStringTableParser::Parse(const std::wstring& text, std::vector<StringTableRow>& rows) {
    size_t pos = 0;
    while (pos < text.size()) {
        const size_t t1 = text.find(kTab, pos);
        if (t1 == std::wstring::npos) return;
        const size_t t2 = text.find(kTab, t1 + 1);
        if (t2 == std::wstring::npos) return;
        const size_t t3 = text.find(kTab, t2 + 1);
        if (t3 == std::wstring::npos) return;
        const size_t end = text.find(kEndLine, t3 + 1);
        if (end == std::wstring::npos) return;
        StringTableRow row;
        row.Col1 = text.substr(pos, t1 - pos);
        row.Col2 = text.substr(t1 + kTab.size(), t2 - t1 - kTab.size());
        row.Col3 = text.substr(t2 + kTab.size(), t3 - t2 - kTab.size());
        row.Col4 = text.substr(t3 + kTab.size(), end - t3 - kTab.size());
        rows.push_back(std::move(row));
        pos = end + kEndLine.size();
    }
}

std::wstring CZEBStringTableParser::Compose(const std::vector<StringTableRow>& rows) {
    std::wstring text;
    for (const StringTableRow& row : rows)
        text += row.Col1 + kTab + row.Col2 + kTab + row.Col3 + kTab + row.Col4 + kEndLine;
    return text;
}

bool CZEBStringTableParser::Validate(const std::vector<StringTableRow>& rows, int& row,
                                     int& column) {
    std::vector<const std::wstring*> preferred;
    for (const StringTableRow& r : rows)
        if (!r.Col4.empty()) preferred.push_back(&r.Col4);
    for (size_t i = 0; i < rows.size(); ++i) {
        for (const std::wstring* name : preferred) {
            if (!rows[i].Col3.empty() && SameComponent(rows[i].Col3, *name)) {
                row = static_cast<int>(i);
                column = 3;
                return false;
            }
            if (!rows[i].Col2.empty() && SameComponent(rows[i].Col2, *name)) {
                row = static_cast<int>(i);
                column = 2;
                return false;
            }
        }
    }
    return true;
}

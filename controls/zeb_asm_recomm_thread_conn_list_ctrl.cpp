#include "controls/zeb_asm_recomm_thread_conn_list_ctrl.h"

#include <QHeaderView>
#include <algorithm>
#include <utility>

#include "framework/case_fold.h"

namespace {
constexpr int kMarkWidth = 16;
}  // namespace

CZEBAsmRecommThreadConnListCtrl::CZEBAsmRecommThreadConnListCtrl(QWidget* parent)
    : CZEBListCtrl(parent) {
    SetEditableColumns(kFirst, kSecond);
}

void CZEBAsmRecommThreadConnListCtrl::SetUpPairColumns(const std::wstring& firstHeading,
                                                       const std::wstring& secondHeading) {
    const int pairWidth = (viewport()->width() - 35) / 2;
    InsertColumn(L"", kMarkWidth);
    InsertColumn(firstHeading, pairWidth);
    InsertColumn(secondHeading, pairWidth);
    AppendEmptyRows(kSpareRows);
}

void CZEBAsmRecommThreadConnListCtrl::LoadPairs(const std::vector<ZebRow>& stored) {
    std::vector<std::pair<std::wstring, std::wstring>> pairs;
    for (const ZebRow& row : stored)
        if (row.size() >= 2) pairs.emplace_back(ZebUpperCase(row[0]), ZebUpperCase(row[1]));
    std::sort(pairs.begin(), pairs.end());
    pairs.erase(std::unique(pairs.begin(), pairs.end()), pairs.end());
    std::vector<CZebGridModel::Row> rows;
    rows.reserve(pairs.size() + GetRows().size());
    for (auto& [first, second] : pairs) rows.push_back({L"", std::move(first), std::move(second)});
    rows.insert(rows.end(), GetRows().begin(), GetRows().end());
    SetRows(std::move(rows));
}

bool CZEBAsmRecommThreadConnListCtrl::ReadPairs(std::vector<ZebRow>& pairs, int& halfRow) const {
    pairs.clear();
    const std::vector<CZebGridModel::Row>& rows = GetRows();
    for (size_t i = 0; i < rows.size(); ++i) {
        const std::wstring& first = CZebGridModel::CellOf(rows[i], kFirst);
        const std::wstring& second = CZebGridModel::CellOf(rows[i], kSecond);
        if (first.empty() && second.empty()) continue;
        if (first.empty() || second.empty()) {
            halfRow = static_cast<int>(i);
            return false;
        }
        pairs.push_back({first, second});
    }
    return true;
}

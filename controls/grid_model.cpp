#include "controls/grid_model.h"

#include <algorithm>

namespace {
const std::wstring kEmpty;
}

int CZebGridModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(m_rows.size());
}

int CZebGridModel::columnCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : HeaderCount();
}

QVariant CZebGridModel::data(const QModelIndex& index, int role) const {
    if (role != Qt::DisplayRole || !index.isValid()) return {};
    return QString::fromStdWString(Text(index.row(), index.column()));
}

QVariant CZebGridModel::headerData(int section, Qt::Orientation orientation, int role) const {
    if (orientation != Qt::Horizontal || section < 0 || section >= HeaderCount()) return {};
    if (role == Qt::DisplayRole) return QString::fromStdWString(m_headers[section]);
    if (role == Qt::TextAlignmentRole) return QVariant::fromValue(Qt::AlignLeft | Qt::AlignVCenter);
    return {};
}

void CZebGridModel::AddColumn(const std::wstring& header) {
    const int column = HeaderCount();
    beginInsertColumns({}, column, column);
    m_headers.push_back(header);
    endInsertColumns();
}

const std::wstring& CZebGridModel::Text(int row, int column) const {
    if (row < 0 || column < 0 || row >= rowCount()) return kEmpty;
    return CellOf(m_rows[row], static_cast<size_t>(column));
}

const std::wstring& CZebGridModel::CellOf(const Row& row, size_t column) {
    return column < row.size() ? row[column] : kEmpty;
}

void CZebGridModel::SetText(int row, int column, const std::wstring& text) {
    if (row < 0 || column < 0 || row >= rowCount() || column >= HeaderCount()) return;
    Row& cells = m_rows[row];
    if (column >= static_cast<int>(cells.size())) cells.resize(column + 1);
    cells[column] = text;
    const QModelIndex cell = index(row, column);
    emit dataChanged(cell, cell, {Qt::DisplayRole});
}

bool CZebGridModel::InsertRowAt(int index, Row row) {
    if (index < 0 || index > rowCount()) return false;
    beginInsertRows({}, index, index);
    m_rows.insert(m_rows.begin() + index, std::move(row));
    endInsertRows();
    return true;
}

bool CZebGridModel::RemoveRowAt(int index) {
    if (index < 0 || index >= rowCount()) return false;
    beginRemoveRows({}, index, index);
    m_rows.erase(m_rows.begin() + index);
    endRemoveRows();
    return true;
}

void CZebGridModel::ClearRows(const std::vector<int>& rows) {
    if (rows.empty()) return;
    for (int row : rows) m_rows[row].clear();
    emit dataChanged(index(rows.front(), 0), index(rows.back(), std::max(0, HeaderCount() - 1)));
}

void CZebGridModel::RemoveRows(const std::vector<int>& rows) {
    if (rows.size() == 1) {
        RemoveRowAt(rows.front());
        return;
    }
    if (rows.empty()) return;
    beginResetModel();
    size_t kept = 0, next = 0;
    for (size_t row = 0; row < m_rows.size(); ++row) {
        if (next < rows.size() && rows[next] == static_cast<int>(row)) {
            ++next;
            continue;
        }
        if (kept != row) m_rows[kept] = std::move(m_rows[row]);
        ++kept;
    }
    m_rows.resize(kept);
    endResetModel();
}

void CZebGridModel::SetRows(std::vector<Row> rows) {
    beginResetModel();
    m_rows = std::move(rows);
    endResetModel();
}

void CZebGridModel::AppendEmptyRows(int count) {
    if (count <= 0) return;
    const int first = rowCount();
    beginInsertRows({}, first, first + count - 1);
    m_rows.resize(m_rows.size() + count);
    endInsertRows();
}

void CZebGridModel::RemoveAllRows() {
    beginResetModel();
    m_rows.clear();
    endResetModel();
}

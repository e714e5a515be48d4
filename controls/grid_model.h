#pragma once

#include <QAbstractTableModel>
#include <string>
#include <vector>

// The cells of a grid as rows of wide texts. Rows may be shorter than the header: missing cells
// read as empty. Bulk operations do one reset or one insertion, so large tables fill in linear
// time.
class CZebGridModel : public QAbstractTableModel {
    Q_OBJECT
public:
    using Row = std::vector<std::wstring>;

    explicit CZebGridModel(QObject* parent = nullptr) : QAbstractTableModel(parent) {}

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

    void AddColumn(const std::wstring& header);
    int HeaderCount() const { return static_cast<int>(m_headers.size()); }

    const std::wstring& Text(int row, int column) const;
    // A cell of a row; empty past the row's end.
    static const std::wstring& CellOf(const Row& row, size_t column);
    void SetText(int row, int column, const std::wstring& text);
    const std::vector<Row>& Rows() const { return m_rows; }

    bool InsertRowAt(int index, Row row);
    bool RemoveRowAt(int index);
    // Rows ascending. Empties them in place, or removes them, in one pass.
    void ClearRows(const std::vector<int>& rows);
    void RemoveRows(const std::vector<int>& rows);
    void SetRows(std::vector<Row> rows);
    void AppendEmptyRows(int count);
    void RemoveAllRows();

private:
    std::vector<std::wstring> m_headers;
    std::vector<Row> m_rows;
};

// Fills the editable grid with 100,000 rows of 5 cells and reads every cell back as an OK
// handler does, against a plain QTableView over a minimal model holding the same strings.
// Both tables are shown once filled. Prints both times and their ratio (target: at most 1.5).
#include <QAbstractTableModel>
#include <QApplication>
#include <QTableView>
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

#include "controls/zeb_list_ctrl.h"

namespace {
constexpr int kRows = 100000;
constexpr int kColumns = 5;
constexpr int kRuns = 5;

class PlainModel : public QAbstractTableModel {
public:
    int rowCount(const QModelIndex& = {}) const override { return static_cast<int>(rows.size()); }
    int columnCount(const QModelIndex& = {}) const override { return kColumns; }
    QVariant data(const QModelIndex& index, int role) const override {
        if (role != Qt::DisplayRole) return {};
        return rows[index.row()][index.column()];
    }
    void Fill(std::vector<std::vector<QString>> filled) {
        beginResetModel();
        rows = std::move(filled);
        endResetModel();
    }
    std::vector<std::vector<QString>> rows;
};

std::wstring CellText(int row, int column) {
    return L"Part " + std::to_wstring(row) + L"." + std::to_wstring(column);
}

template <class F>
double BestSeconds(F run) {
    double best = 1e9;
    for (int i = 0; i < kRuns; ++i) {
        const auto start = std::chrono::steady_clock::now();
        run();
        const std::chrono::duration<double> took = std::chrono::steady_clock::now() - start;
        best = std::min(best, took.count());
    }
    return best;
}

size_t g_sink = 0;

void RunGrid() {
    CZEBListCtrl grid;
    grid.SetColumns({L"A", L"B", L"C", L"D", L"E"});
    std::vector<CZebGridModel::Row> rows(kRows);
    for (int r = 0; r < kRows; ++r)
        for (int c = 0; c < kColumns; ++c) rows[r].push_back(CellText(r, c));
    grid.SetRows(std::move(rows));
    grid.show();
    QApplication::processEvents();
    for (int r = 0; r < grid.GetRowCount(); ++r)
        for (int c = 0; c < kColumns; ++c) {
            const std::wstring text = grid.GetCellText(r, c);
            g_sink += text.size();
        }
}

void RunPlain() {
    QTableView view;
    PlainModel model;
    view.setModel(&model);
    std::vector<std::vector<QString>> rows(kRows);
    for (int r = 0; r < kRows; ++r)
        for (int c = 0; c < kColumns; ++c)
            rows[r].push_back(QString::fromStdWString(CellText(r, c)));
    model.Fill(std::move(rows));
    view.show();
    QApplication::processEvents();
    for (int r = 0; r < model.rowCount(); ++r)
        for (int c = 0; c < kColumns; ++c) {
            const std::wstring text =
                model.data(model.index(r, c), Qt::DisplayRole).toString().toStdWString();
            g_sink += text.size();
        }
}
}  // namespace

// Bulk work on a filled grid: the empty reserve, then clearing and deleting a full selection.
void RunBulk() {
    CZEBListCtrl grid;
    grid.SetColumns({L"A", L"B", L"C", L"D", L"E"});
    grid.SetRows(std::vector<CZebGridModel::Row>(kRows, CZebGridModel::Row{L"x", L"y"}));
    grid.AppendEmptyRows(260);
    grid.selectAll();
    grid.ClearSelectedRows();
    grid.selectAll();
    grid.DeleteSelectedRows();
    g_sink += grid.GetRowCount() + 1;
}

int main(int argc, char** argv) {
    setenv("QT_QPA_PLATFORM", "offscreen", 0);
    QApplication app(argc, argv);
    const double grid = BestSeconds(RunGrid);
    const double plain = BestSeconds(RunPlain);
    std::printf("rows %d x %d cells, best of %d runs\n", kRows, kColumns, kRuns);
    std::printf("CZEBListCtrl fill + read: %.3f s\n", grid);
    std::printf("plain QTableView fill + read: %.3f s\n", plain);
    std::printf("ratio: %.2f (target <= 1.5)\n", grid / plain);
    std::printf("fill + 260 empty rows + clear all + delete all: %.3f s\n", BestSeconds(RunBulk));
    return g_sink == 0;
}

#include "dialogs/fastener/zeb_asm_fastener_clearance_rule_list_ctrl.h"

#include <QPainter>
#include <QStyledItemDelegate>

#include "dialogs/fastener/fastener_cells.h"
#include "framework/zeb_types.h"

namespace {
// Greys the cells of disabled Max columns.
class MaxCellDelegate : public QStyledItemDelegate {
public:
    explicit MaxCellDelegate(CZEBAsmFastenerClearanceRuleListCtrl* grid)
        : QStyledItemDelegate(grid), m_grid(grid) {}

    void paint(QPainter* painter, const QStyleOptionViewItem& option,
               const QModelIndex& index) const override {
        if (m_grid->IsDisabledColumn(index.column()))
            painter->fillRect(option.rect, QColor(192, 192, 192));
        QStyledItemDelegate::paint(painter, option, index);
    }

private:
    CZEBAsmFastenerClearanceRuleListCtrl* m_grid;
};
}  // namespace

CZEBAsmFastenerClearanceRuleListCtrl::CZEBAsmFastenerClearanceRuleListCtrl(QWidget* parent)
    : CZEBListCtrl(parent) {
    setItemDelegate(new MaxCellDelegate(this));
}

void CZEBAsmFastenerClearanceRuleListCtrl::SetOperators(int conditionA, int conditionB) {
    m_operators[0] = conditionA;
    m_operators[1] = conditionB;
    viewport()->update();
}

bool CZEBAsmFastenerClearanceRuleListCtrl::IsDisabledColumn(int column) const {
    return (column == kMaxA && m_operators[0] == ZebOp_GreaterEqual) ||
           (column == kMaxB && m_operators[1] == ZebOp_GreaterEqual);
}

bool CZEBAsmFastenerClearanceRuleListCtrl::RowHasName(int row) const {
    return !GetCellText(row, kFastenerNameColumn).empty();
}

CZEBListCtrl::CellEditor CZEBAsmFastenerClearanceRuleListCtrl::EditorOf(int row, int column) const {
    if (column == kFastenerNameColumn) return CellEditor::Choice;
    if (column < kMinA || column > kMaxB) return CellEditor::None;
    if (IsDisabledColumn(column)) return CellEditor::Locked;
    return row >= 0 && row < GetRowCount() && RowHasName(row) ? CellEditor::Text : CellEditor::None;
}

long CZEBAsmFastenerClearanceRuleListCtrl::CommitOpenEditor() {
    return CommitFastenerEditor(*this);
}

long CZEBAsmFastenerClearanceRuleListCtrl::OnDeleteKey() { return DeleteSelectedRows(); }

bool CZEBAsmFastenerClearanceRuleListCtrl::IsNumberCell(int /*row*/, int column) const {
    return column >= kMinA && column <= kMaxB;
}

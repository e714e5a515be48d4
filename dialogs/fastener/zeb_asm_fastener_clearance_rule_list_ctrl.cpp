#include "dialogs/fastener/zeb_asm_fastener_clearance_rule_list_ctrl.h"

#include <QKeyEvent>
#include <QMouseEvent>
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

int CZEBAsmFastenerClearanceRuleListCtrl::NextValueColumn(int column, int step) const {
    for (int next = column + step; next >= kMinA && next <= kMaxB; next += step)
        if (!IsDisabledColumn(next)) return next;
    return -1;
}

long CZEBAsmFastenerClearanceRuleListCtrl::CommitOpenEditor() { return CommitFastenerEditor(*this); }

long CZEBAsmFastenerClearanceRuleListCtrl::KeyHandler(QEvent* event) {
    if (event->type() != QEvent::KeyPress) return 0;
    const int row = GetEditRow(), column = GetEditColumn();
    switch (static_cast<QKeyEvent*>(event)->key()) {
    case Qt::Key_Tab:
    case Qt::Key_Right: {
        if (!IsCellEditOpen() || !RowHasName(row)) return 0;
        const int next = NextValueColumn(column, +1);
        if (next < 0) return 0;
        const long result = CommitOpenEditor();
        BeginCellEdit(row, next, kEditLimit);
        return result;
    }
    case Qt::Key_Left: {
        if (!IsCellEditOpen()) return 0;
        const int next = NextValueColumn(column, -1);
        const long result = CommitOpenEditor();
        if (next > 0) BeginCellEdit(row, next, kEditLimit);
        return result;
    }
    case Qt::Key_Up:
    case Qt::Key_Down: {
        const int target = row + (static_cast<QKeyEvent*>(event)->key() == Qt::Key_Up ? -1 : 1);
        const long result = CommitOpenEditor();
        if (target >= 0 && !IsDisabledColumn(column)) OpenFastenerCell(*this, target, column);
        return result;
    }
    case Qt::Key_Return:
    case Qt::Key_Enter:
        return CommitOnEnter(*this);
    case Qt::Key_Escape:
        return CloseFastenerEditors(*this);
    case Qt::Key_Delete:
        return IsCellEditOpen() || IsCellChoiceOpen() ? 0 : DeleteSelectedRows();
    default:
        return 0;
    }
}

void CZEBAsmFastenerClearanceRuleListCtrl::mousePressEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton) {
        CZEBListCtrl::mousePressEvent(event);
        return;
    }
    CommitOpenEditor();
    int row = -1, column = -1;
    HitTest(event->position().toPoint(), row, column);
    if (column >= kMinA && column <= kMaxB) {
        if (IsDisabledColumn(column)) return;
        if (row >= 0 && RowHasName(row)) {
            BeginCellEdit(row, column, kEditLimit);
            return;
        }
    }
    CZEBListCtrl::mousePressEvent(event);
}

void CZEBAsmFastenerClearanceRuleListCtrl::mouseDoubleClickEvent(QMouseEvent* event) {
    if (event->button() == Qt::LeftButton && ChooseNameAt(*this, event->position().toPoint())) return;
    CZEBListCtrl::mouseDoubleClickEvent(event);
}

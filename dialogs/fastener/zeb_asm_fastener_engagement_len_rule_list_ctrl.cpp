#include "dialogs/fastener/zeb_asm_fastener_engagement_len_rule_list_ctrl.h"

#include <QKeyEvent>
#include <QMouseEvent>

#include "dialogs/fastener/fastener_cells.h"

long CZEBAsmFastenerEngagementLenRuleListCtrl::CommitOpenEditor() {
    return CommitFastenerEditor(*this);
}

long CZEBAsmFastenerEngagementLenRuleListCtrl::KeyHandler(QEvent* event) {
    if (event->type() != QEvent::KeyPress) return 0;
    int row = GetEditRow(), column = GetEditColumn();
    switch (static_cast<QKeyEvent*>(event)->key()) {
    case Qt::Key_Tab:
        if (column >= kLength) return 0;
        ++column;
        break;
    case Qt::Key_Right:
        if (column >= kLength) return CommitOpenEditor();
        ++column;
        break;
    case Qt::Key_Left:
        if (column <= kFastenerNameColumn) return CommitOpenEditor();
        --column;
        break;
    case Qt::Key_Up:
        if (--row < 0) return CommitOpenEditor();
        break;
    case Qt::Key_Down:
        ++row;
        break;
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
    // The moves commit, then open the neighbouring cell.
    const long result = CommitOpenEditor();
    OpenFastenerCell(*this, row, column);
    return result;
}

void CZEBAsmFastenerEngagementLenRuleListCtrl::mousePressEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton) {
        CZEBListCtrl::mousePressEvent(event);
        return;
    }
    CommitOpenEditor();
    int row = -1, column = -1;
    HitTest(event->position().toPoint(), row, column);
    if (row >= 0 && column == kLength) {
        BeginCellEdit(row, column, kEditLimit);
        return;
    }
    CZEBListCtrl::mousePressEvent(event);
}

void CZEBAsmFastenerEngagementLenRuleListCtrl::mouseDoubleClickEvent(QMouseEvent* event) {
    if (event->button() == Qt::LeftButton && ChooseNameAt(*this, event->position().toPoint())) return;
    CZEBListCtrl::mouseDoubleClickEvent(event);
}

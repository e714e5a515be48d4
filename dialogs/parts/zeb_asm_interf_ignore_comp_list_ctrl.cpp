#include "dialogs/parts/zeb_asm_interf_ignore_comp_list_ctrl.h"

#include <QKeyEvent>

long ZEBASMInterfIgnoreCompListCtrl::KeyHandler(QEvent* event) {
    if (event->type() == QEvent::KeyPress && static_cast<QKeyEvent*>(event)->key() == Qt::Key_Tab &&
        GetEditColumn() == GetLastEditableColumn()) {
        const int row = GetEditRow();
        std::wstring text;
        const long result = EndCellEdit(text);
        BeginCellEdit(row + 1, GetFirstEditableColumn(), kEditLimit);
        return result;
    }
    return CZEBAsmRuleListCtrl::KeyHandler(event);
}

#include "dialogs/fastener/zeb_asm_fastener_engagement_len_rule_list_ctrl.h"

#include "dialogs/fastener/fastener_cells.h"

long CZEBAsmFastenerEngagementLenRuleListCtrl::CommitOpenEditor() {
    return CommitFastenerEditor(*this);
}

CZEBListCtrl::CellEditor CZEBAsmFastenerEngagementLenRuleListCtrl::EditorOf(int row,
                                                                            int column) const {
    if (column == kFastenerNameColumn) return CellEditor::Choice;
    return column == kLength && row >= 0 ? CellEditor::Text : CellEditor::None;
}

long CZEBAsmFastenerEngagementLenRuleListCtrl::OnDeleteKey() { return DeleteSelectedRows(); }

bool CZEBAsmFastenerEngagementLenRuleListCtrl::IsNumberCell(int /*row*/, int column) const {
    return column == kLength;
}

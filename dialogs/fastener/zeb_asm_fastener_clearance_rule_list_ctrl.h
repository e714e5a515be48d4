#pragma once

#include "controls/zeb_list_ctrl.h"

// The clearance table: the fastener name, then Min and Max of condition A and of condition B.
// A condition whose operator is ">=" has no Max: its Max cells are greyed, refuse clicks, and
// the keys move past them. Values are edited only in rows that name a fastener.
class CZEBAsmFastenerClearanceRuleListCtrl : public CZEBListCtrl {
    Q_OBJECT
public:
    enum : int { kMinA = 1, kMaxA = 2, kMinB = 3, kMaxB = 4 };

    explicit CZEBAsmFastenerClearanceRuleListCtrl(QWidget* parent = nullptr);

    // The operator codes of the two conditions (7 ">=", 1 "RANGE"; anything else counts as a
    // range).
    void SetOperators(int conditionA, int conditionB);
    bool IsDisabledColumn(int column) const;

    // The name is chosen in its drop-down; values are typed in rows that name a fastener; a
    // disabled Max takes nothing, not even a click.
    CellEditor EditorOf(int row, int column) const override;
    long CommitOpenEditor() override;

protected:
    bool IsNumberCell(int row, int column) const override;
    long OnDeleteKey() override;

private:
    bool RowHasName(int row) const;

    int m_operators[2] = {0, 0};
};

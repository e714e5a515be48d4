#pragma once

#include "controls/zeb_list_ctrl.h"

// The engagement length table: the fastener name and its length.
class CZEBAsmFastenerEngagementLenRuleListCtrl : public CZEBListCtrl {
    Q_OBJECT
public:
    enum : int { kLength = 1 };

    explicit CZEBAsmFastenerEngagementLenRuleListCtrl(QWidget* parent = nullptr)
        : CZEBListCtrl(parent) {}

    // The name is chosen in its drop-down, the length typed.
    CellEditor EditorOf(int row, int column) const override;
    long CommitOpenEditor() override;

protected:
    bool IsNumberCell(int row, int column) const override;
    long OnDeleteKey() override;
};

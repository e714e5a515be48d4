#pragma once

#include "controls/zeb_list_ctrl.h"

// The engagement length table: the fastener name and its length.
class CZEBAsmFastenerEngagementLenRuleListCtrl : public CZEBListCtrl {
    Q_OBJECT
public:
    enum : int { kLength = 1 };

    explicit CZEBAsmFastenerEngagementLenRuleListCtrl(QWidget* parent = nullptr)
        : CZEBListCtrl(parent) {}

    // Commits what is open as a click does before it acts.
    long CommitOpenEditor();
    long KeyHandler(QEvent* event) override;

protected:
    void mousePressEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
};

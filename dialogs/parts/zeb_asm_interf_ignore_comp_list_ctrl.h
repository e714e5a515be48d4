#pragma once

#include "controls/zeb_asm_rule_list_ctrl.h"

// The list of components interference detection ignores: one name column, edited and browsed as
// a component table (Tab past the name goes on to the next row, as in every table).
class ZEBASMInterfIgnoreCompListCtrl : public CZEBAsmRuleListCtrl {
    Q_OBJECT
public:
    explicit ZEBASMInterfIgnoreCompListCtrl(QWidget* parent = nullptr)
        : CZEBAsmRuleListCtrl(parent) {}
};

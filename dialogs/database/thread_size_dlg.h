#pragma once

#include "framework/ui/rule_dlg_base.h"

class CZebRule;
class CZEBAsmRecommThreadConnListCtrl;

// The thread size editor: the rows of parameter 9148 of the recommended thread connection rule,
// two texts each, edited in the rule object in memory and written back on OK. The database
// service is not involved.
class CZEBEditThreadSizeDlg : public CZEBRuleDlgBase {
    Q_OBJECT
public:
    enum : int { kTemplateId = 9147, kImageId = 13120, kTableId = 9148 };

    // The caller makes the localized resource library current while the dialog runs.
    CZEBEditThreadSizeDlg(QWidget* parent, CZebRule* rule);

    CZEBAsmRecommThreadConnListCtrl* GetTable() const { return m_table; }

    bool OnInitDialog() override;
    void OnOK() override;

private:
    CZebRule* m_rule;
    CZEBAsmRecommThreadConnListCtrl* m_table;
};

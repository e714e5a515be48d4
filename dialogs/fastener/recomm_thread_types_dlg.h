#pragma once

#include <string>

#include "dialogs/common/rule_dialog.h"

class CWrapperComboCtrl;
class CZEBAsmRecommThreadConnListCtrl;
class QCheckBox;
class QPushButton;

// The recommended thread types rule's dialog: the pairs of thread types of parameter 7072, the
// switch of the thread size table (criteria status of 9148) with the button to its editor, and
// the severity.
class CZEBAssemblyRecommThreadTypesInConnectionDlg : public CZEBRuleDialog {
    Q_OBJECT
public:
    enum : int {
        kTemplateId = 7067,
        kImageId = 13120,
        kSeverityId = 7068,
        kGridId = 7069,
        kThreadSizesId = 9145,
        kThreadSizesSwitchId = 9146,
    };

    explicit CZEBAssemblyRecommThreadTypesInConnectionDlg(CZebRule* rule,
                                                          const std::wstring& unitText = {});

    CZEBAsmRecommThreadConnListCtrl* GetGrid() const { return m_grid; }

protected:
    void LoadFromRule(CZebRule& rule) override;
    std::optional<ZebRefusal> Validate(CZebRule& rule) override;
    void StoreIntoRule(CZebRule& rule) override;

private:
    void OpenThreadSizes();

    CWrapperComboCtrl* m_severity;
    CZEBAsmRecommThreadConnListCtrl* m_grid;
    QPushButton* m_threadSizes;
    QCheckBox* m_threadSizesSwitch;
};

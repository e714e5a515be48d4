#pragma once

#include <string>

#include "dialogs/common/rule_dialog.h"

class CDoubleEditEx;
class CWrapperComboCtrl;
class QCheckBox;
class QLabel;
class ZEBASMInterfDetCheckCompDlg;
class ZEBASMInterfDetIgnoreCompDlg;
class ZEBASMInterfMainTabCtrl;

// The interference detection rule's dialog: the rule's two options, the volume limit (8978) with
// its switch and operator, the severity, and two pages: the components to check and the
// components to ignore. Ctrl+I imports a spreadsheet into the page shown.
class ZEBASMInterfDetMainDlg : public CZEBRuleDialog {
    Q_OBJECT
public:
    enum : int {
        kTemplateId = 9081,
        kImageId = 13050,
        kVolumeSwitchId = 6059,
        kVolumeOperatorId = 6060,
        kVolumeValueId = 6061,
        kVolumeUnitId = 6062,
        kFirstOptionId = 6063,
        kSecondOptionId = 6064,
        kSeverityId = 6066,
        kTabsId = 6073,
    };
    enum : int { kCheckPage = 0, kIgnorePage = 1 };

    explicit ZEBASMInterfDetMainDlg(CZebRule* rule, const std::wstring& unitText = {});

    ZEBASMInterfMainTabCtrl* GetTabs() const { return m_tabs; }
    ZEBASMInterfDetCheckCompDlg* GetCheckPage() const { return m_checkPage; }
    ZEBASMInterfDetIgnoreCompDlg* GetIgnorePage() const { return m_ignorePage; }
    // Ctrl+I: the spreadsheet import of the page shown.
    void ImportSpreadsheet() override;

protected:
    void LoadFromRule(CZebRule& rule) override;
    std::optional<ZebRefusal> Validate(CZebRule& rule) override;
    void StoreIntoRule(CZebRule& rule) override;

private:
    void UpdateVolumeControls();

    ZEBASMInterfMainTabCtrl* m_tabs;
    CWrapperComboCtrl* m_severity;
    CWrapperComboCtrl* m_operator;
    QCheckBox* m_volumeSwitch;
    CDoubleEditEx* m_volume;
    QLabel* m_volumeUnit;
    QCheckBox* m_firstOption;
    QCheckBox* m_secondOption;
    ZEBASMInterfDetCheckCompDlg* m_checkPage = nullptr;
    ZEBASMInterfDetIgnoreCompDlg* m_ignorePage = nullptr;
};

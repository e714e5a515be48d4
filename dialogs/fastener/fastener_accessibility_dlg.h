#pragma once

#include <string>

#include "dialogs/common/rule_dialog.h"

class CDoubleEditEx;
class CWrapperComboCtrl;
class PictureControl;
class QCheckBox;

// The fastener accessibility rule's dialog: the tool clearance 6080, a second clearance 6092
// switched on by 6093, and the severity.
class CZEBAssemblyFastenerAccessibilityDlg : public CZEBRuleDialog {
    Q_OBJECT
public:
    enum : int {
        kTemplateId = 6050,
        kImageId = 13060,
        kValuesFrameId = 6015,
        kDatabaseListId = 6016,
        kHardwareDatabaseId = 6017,
        kSeverityId = 6022,
        kSeverityLabelId = 6023,
        kPictureId = 6051,
        kFirstValueId = 6052,
        kSecondValueId = 6056,
        kSecondSwitchId = 6058,
        kSpareCheckId = 9142,
        kSpareButtonId = 9134,
    };

    explicit CZEBAssemblyFastenerAccessibilityDlg(CZebRule* rule,
                                                  const std::wstring& unitText = {});

protected:
    void LoadFromRule(CZebRule& rule) override;
    std::optional<ZebRefusal> Validate(CZebRule& rule) override;
    void StoreIntoRule(CZebRule& rule) override;

private:
    CWrapperComboCtrl* m_severity;
    CWrapperComboCtrl* m_database;
    CDoubleEditEx* m_first;
    CDoubleEditEx* m_second;
    QCheckBox* m_secondSwitch;
    PictureControl* m_picture;
};

#pragma once

#include <string>

#include "dialogs/common/rule_dialog.h"

class CDoubleEditEx;
class CWrapperComboCtrl;
class PictureControl;
class QCheckBox;
class QLabel;

// The fastener alignment rule's dialog: the limit 8019 with its operator ("=" or "<="), the
// enabled status of 8076 and the severity.
class CZEBAssemblyFastenerAlignmentDlg : public CZEBRuleDialog {
    Q_OBJECT
public:
    enum : int {
        kTemplateId = 8023,
        kImageId = 13150,
        kDatabaseListId = 6016,
        kFastenerNamesId = 6017,
        kSeverityId = 6022,
        kValueId = 8024,
        kUnitLabelId = 8030,
        kPictureId = 8032,
        kOperatorId = 8038,
        kSwitchId = 8090,
    };

    CZEBAssemblyFastenerAlignmentDlg(CZebRule* rule, const std::wstring& unitText);

protected:
    void LoadFromRule(CZebRule& rule) override;
    std::optional<ZebRefusal> Validate(CZebRule& rule) override;
    void StoreIntoRule(CZebRule& rule) override;

private:
    // "=" fixes the limit at 0.
    void ApplyOperatorRule();
    void OpenFastenerNames();

    CWrapperComboCtrl* m_severity;
    CWrapperComboCtrl* m_database;
    CDoubleEditEx* m_value;
    QLabel* m_unitLabel;
    CWrapperComboCtrl* m_operator;
    QCheckBox* m_switch;
    PictureControl* m_picture;
};

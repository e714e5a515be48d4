#pragma once

#include <string>

#include "dialogs/common/rule_dialog.h"
#include "framework/param_storage.h"

class CDoubleEditEx;
class CWrapperComboCtrl;
class PictureControl;
class QCheckBox;
class QRadioButton;

// The bolt and screw rationalization rule's dialog: which properties must be equal (9024, 9025),
// the length and diameter steps with their operators and switches (9026, 9027), the choice held
// in 9603, and the severity.
class CDFASMBoltScrewRationalizationDlg : public CZEBRuleDialog {
    Q_OBJECT
public:
    enum : int {
        kTemplateId = 9012,
        kImageId = 13180,
        kDatabaseListId = 6016,
        kHardwareDatabaseId = 6017,
        kSeverityId = 6022,
        kPictureId = 9013,
        kSameHeadId = 9015,
        kSameMaterialId = 9016,
        kLengthSwitchId = 9017,
        kDiameterSwitchId = 9018,
        kLengthOperatorId = 9019,
        kDiameterOperatorId = 9020,
        kLengthValueId = 9021,
        kDiameterValueId = 9022,
        kTogetherId = 9601,
        kSeparateId = 9602,
    };

    explicit CDFASMBoltScrewRationalizationDlg(CZebRule* rule, const std::wstring& unitText = {});

protected:
    void LoadFromRule(CZebRule& rule) override;
    std::optional<ZebRefusal> Validate(CZebRule& rule) override;
    void StoreIntoRule(CZebRule& rule) override;

private:
    // One step limit: its switch, operator and value.
    struct Step {
        QCheckBox* on;
        CWrapperComboCtrl* op;
        CDoubleEditEx* value;
    };
    void LoadStep(const Step& step, const ZebTypedParam<double>& param);
    void StoreStep(const Step& step, ZebTypedParam<double>& param);
    // OK is offered while at least one of the four check boxes is checked.
    void UpdateOk();
    void OpenHardwareDatabase();

    CWrapperComboCtrl* m_severity;
    CWrapperComboCtrl* m_database;
    QCheckBox* m_sameHead;
    QCheckBox* m_sameMaterial;
    Step m_length;
    Step m_diameter;
    QRadioButton* m_together;
    QRadioButton* m_separate;
    PictureControl* m_picture;
};

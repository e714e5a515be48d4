#pragma once

#include <string>

#include "dialogs/common/rule_dialog.h"

class CDoubleEditEx;
class CWrapperComboCtrl;
class CZEBAsmContactMaterialListCtrl;
class QCheckBox;
class QLabel;

// The contact material rule's dialog: the pairs of materials that must not touch (7065), the
// distance limit (7051) with its switch, the severity, the database modules, and the material
// database editor.
class CZEBAssemblyCheckContactMaterialDlg : public CZEBRuleDialog {
    Q_OBJECT
public:
    enum : int {
        kTemplateId = 7057,
        kImageId = 13100,
        kDistanceId = 6002,
        kMaterialDatabaseId = 7054,
        kDistanceSwitchId = 7055,
        kTableId = 7056,
        kUnitLabelId = 7059,
        kSeverityId = 7061,
        kDatabaseListId = 7063,
    };
    static constexpr int kSpareRows = 260;

    explicit CZEBAssemblyCheckContactMaterialDlg(CZebRule* rule, const std::wstring& unitText = {});

    void OpenMaterialDatabase();

protected:
    void LoadFromRule(CZebRule& rule) override;
    void CommitEdits() override;
    std::optional<ZebRefusal> Validate(CZebRule& rule) override;
    void StoreIntoRule(CZebRule& rule) override;

private:
    void UpdateDistance();

    CWrapperComboCtrl* m_severity;
    QCheckBox* m_distanceSwitch;
    CDoubleEditEx* m_distance;
    QLabel* m_unitLabel;
    CZEBAsmContactMaterialListCtrl* m_table;
    CWrapperComboCtrl* m_databases;
};

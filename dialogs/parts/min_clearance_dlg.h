#pragma once

#include <string>

#include "dialogs/common/rule_dialog.h"
#include "dialogs/parts/component_table_import.h"

class CDoubleEditEx;
class CWrapperComboCtrl;
class CZEBAsmRuleListCtrl;
class QCheckBox;
class QLabel;
class QRadioButton;

// The minimum clearance rule's dialog: the clearance every pair of parts must keep (2062) with
// its switch, the part pairs with their own clearances (2048) and their switch (2049), the choice
// held in 2063, the option 6072 and the severity. Ctrl+I imports the pairs from a spreadsheet.
class CZEBAssemblyMinClearanceBetPartsDlg : public CZEBRuleDialog {
    Q_OBJECT
public:
    enum : int {
        kTemplateId = 6002,
        kImageId = 13020,
        kSeverityId = 6000,
        kClearanceId = 6002,
        kTableId = 6007,
        kClearanceSwitchId = 6008,
        kPairsSwitchId = 6009,
        kUnitLabelId = 6030,
        kSameSubassemblyId = 6039,
        kOtherSubassembliesId = 6040,
        kTouchingId = 6049,
        kHintId = 9508,
    };
    // Empty rows kept below the stored pairs.
    static constexpr int kSpareRows = 120;
    // A general clearance above this is taken back at once.
    static constexpr double kLargestClearance = 1000000.0;

    explicit CZEBAssemblyMinClearanceBetPartsDlg(CZebRule* rule, const std::wstring& unitText = {});
    void ImportSpreadsheet() override;

protected:
    void LoadFromRule(CZebRule& rule) override;
    std::optional<ZebRefusal> Validate(CZebRule& rule) override;
    void StoreIntoRule(CZebRule& rule) override;

private:
    void LoadTable(CZebRule& rule);
    void StoreTable(CZebRule& rule);
    void TakeBackTooLarge();
    // The pair table gets its columns only when the rule has its pairs and their switch.
    bool TableLoaded() const;

    CWrapperComboCtrl* m_severity;
    QCheckBox* m_clearanceSwitch;
    CDoubleEditEx* m_clearance;
    QLabel* m_unitLabel;
    QCheckBox* m_pairsSwitch;
    CZEBAsmRuleListCtrl* m_table;
    QRadioButton* m_sameSubassembly;
    QRadioButton* m_otherSubassemblies;
    QCheckBox* m_touching;
    QLabel* m_hint;
    // The clearance text the dialog opened with, put back over a value too large.
    QString m_lastAcceptedClearance;
    SheetImportState m_import;
};

// The fastener alignment and fastener accessibility dialogs driven as a user drives them:
// controls found by their ids, message boxes answered by the recording UI service.
#include <gtest/gtest.h>

#include <QCheckBox>
#include <QLabel>
#include <QPushButton>
#include <QRadioButton>
#include <QTest>
#include <fstream>

#include "app/assembly_rules_app.h"
#include "app/settings_document.h"
#include "controls/double_edit_ex.h"
#include "controls/wrapper_combo_ctrl.h"
#include "dialogs/fastener/bolt_screw_rationalization_dlg.h"
#include "dialogs/fastener/fastener_accessibility_dlg.h"
#include "dialogs/fastener/fastener_alignment_dlg.h"
#include "framework/ui/picture_control.h"
#include "framework/ui/recording_ui_service.h"
#include "framework/zeb_xml.h"
#include "rules/bolt_screw_rationalization_rule.h"
#include "rules/fastener_accessibility_rule.h"
#include "rules/fastener_alignment_rule.h"
#include "rules/rule_record.h"
#include "tests/database/db_test_support.h"
#include "tests/support/database_module.h"
#include "tests/support/exported_rule.h"
#include "tests/ui/qt_test_app.h"

namespace {
using Alignment = CZEBAssemblyFastenerAlignmentDlg;
using Accessibility = CZEBAssemblyFastenerAccessibilityDlg;
using BoltScrew = CDFASMBoltScrewRationalizationDlg;

class FastenerSettingDialogsTest : public ::testing::Test {
protected:
    void SetUp() override {
        EnsureQtTestApp();
        ASSERT_TRUE(databaseModule.Loaded()) << databaseModule.Error();
    }

    ScopedDatabaseFolder folder;
    CZebRecordingUiService ui;
    ScopedDatabaseModule databaseModule;
};
}  // namespace

// "=" shows 0.0 and locks the field; "<=" needs a limit of at least 0.000001; the operator, the
// limit, the switch and the severity are stored on OK.
TEST_F(FastenerSettingDialogsTest, AlignmentLimitFollowsItsOperator) {
    CZEBAssemblyFastenerAlignmentRule rule;
    FindTyped<double>(rule, 8019)->values[0] = 0.25;
    Alignment dialog(&rule, L"mm");
    ShowActive(&dialog);
    auto* op = dialog.ControlById<CWrapperComboCtrl>(Alignment::kOperatorId);
    auto* value = dialog.ControlById<CDoubleEditEx>(Alignment::kValueId);
    auto* parallel = dialog.ControlById<QCheckBox>(Alignment::kSwitchId);
    ASSERT_EQ(op->count(), 2);
    EXPECT_EQ(op->itemText(0), "=");
    EXPECT_EQ(op->itemText(1), "<=");
    EXPECT_EQ(op->currentText(), "=");  // the default
    EXPECT_EQ(value->text(), "0.0");
    EXPECT_FALSE(value->isEnabled());
    EXPECT_FALSE(parallel->isChecked());
    EXPECT_EQ(dialog.ControlById<QLabel>(Alignment::kUnitLabelId)->text(), "mm");
    EXPECT_EQ(dialog.ControlById<CWrapperComboCtrl>(Alignment::kDatabaseListId)->currentText(),
              "Vantor Database");
    EXPECT_EQ(dialog.ControlById<CWrapperComboCtrl>(Alignment::kSeverityId)->currentIndex(), 1);
    EXPECT_EQ(dialog.windowTitle().toStdWString(), rule.DisplayName);

    op->setCurrentIndex(1);
    EXPECT_TRUE(value->isEnabled());
    Type(value, "0");
    dialog.OnOK();
    ASSERT_EQ(ui.messages.size(), 1u);
    EXPECT_EQ(ui.messages[0].text, LoadLocalizedString(IDS_ALIGNMENT_OPERATOR_REQUIRED));
    EXPECT_EQ(ui.messages[0].icon, ZebMsgIcon::Information);
    EXPECT_TRUE(dialog.isVisible());
    EXPECT_EQ(FindTyped<double>(rule, 8019)->op, ZebOp_Equal);

    Type(value, "0.000002");
    parallel->setChecked(true);
    dialog.ControlById<CWrapperComboCtrl>(Alignment::kSeverityId)->setCurrentIndex(4);
    dialog.OnOK();
    EXPECT_FALSE(dialog.isVisible());
    EXPECT_EQ(ui.messages.size(), 1u);
    const auto* limit = FindTyped<double>(rule, 8019);
    EXPECT_EQ(limit->op, ZebOp_LessEqual);
    ASSERT_EQ(limit->values.GetSize(), 1);
    EXPECT_DOUBLE_EQ(limit->values[0], 0.000002);
    EXPECT_TRUE(rule.FindParameterInArray(8076)->GetParam()->status);
    EXPECT_EQ(rule.Severity, 5);

    // Back to "=": the field is locked at 0 and 0 is stored.
    Alignment again(&rule, L"mm");
    ShowActive(&again);
    EXPECT_EQ(again.ControlById<CDoubleEditEx>(Alignment::kValueId)->text(), "0.000002");
    again.ControlById<CWrapperComboCtrl>(Alignment::kOperatorId)->setCurrentIndex(0);
    EXPECT_EQ(again.ControlById<CDoubleEditEx>(Alignment::kValueId)->text(), "0.0");
    again.OnOK();
    EXPECT_EQ(limit->op, ZebOp_Equal);
    EXPECT_DOUBLE_EQ(limit->values[0], 0.0);
}

// A stored operator the dialog does not offer opens with none chosen, and OK waits for one; an
// empty limit list gets the value and keeps its operator; Cancel changes nothing.
TEST_F(FastenerSettingDialogsTest, AlignmentNeedsAnOperatorAndCancelKeepsTheRule) {
    CZEBAssemblyFastenerAlignmentRule rule;
    FindTyped<double>(rule, 8019)->op = ZebOp_Greater;
    const std::string before = ExportedText(rule);
    {
        Alignment dialog(&rule, L"in");
        ShowActive(&dialog);
        auto* op = dialog.ControlById<CWrapperComboCtrl>(Alignment::kOperatorId);
        EXPECT_EQ(op->currentIndex(), -1);
        dialog.OnOK();
        ASSERT_EQ(ui.messages.size(), 1u);
        EXPECT_TRUE(dialog.isVisible());
        op->setCurrentIndex(1);
        Type(dialog.ControlById<CDoubleEditEx>(Alignment::kValueId), "0.5");
        dialog.ControlById<QCheckBox>(Alignment::kSwitchId)->setChecked(true);
        dialog.reject();
    }
    EXPECT_EQ(ExportedText(rule), before);

    auto* limit = FindTyped<double>(rule, 8019);
    limit->values.RemoveAll();
    limit->op = ZebOp_Equal;
    Alignment dialog(&rule, L"mm");
    ShowActive(&dialog);
    dialog.ControlById<CWrapperComboCtrl>(Alignment::kOperatorId)->setCurrentIndex(1);
    Type(dialog.ControlById<CDoubleEditEx>(Alignment::kValueId), "1.5");
    dialog.OnOK();
    ASSERT_EQ(limit->values.GetSize(), 1);
    EXPECT_DOUBLE_EQ(limit->values[0], 1.5);
    EXPECT_EQ(limit->op, ZebOp_Equal);
}

// The first clearance must be at least 0.000001; the second only while switched on, and it is
// stored switched off as well; the switch is stored as 1 or 0 and reopens the field disabled.
TEST_F(FastenerSettingDialogsTest, AccessibilityClearancesAndTheirSwitch) {
    CZEBAssemblyFastenerAccessibilityRule rule;
    Accessibility dialog(&rule);
    ShowActive(&dialog);
    auto* first = dialog.ControlById<CDoubleEditEx>(Accessibility::kFirstValueId);
    auto* second = dialog.ControlById<CDoubleEditEx>(Accessibility::kSecondValueId);
    auto* secondSwitch = dialog.ControlById<QCheckBox>(Accessibility::kSecondSwitchId);
    EXPECT_EQ(first->text(), "1.2");
    EXPECT_EQ(second->text(), "2.5");
    EXPECT_FALSE(secondSwitch->isChecked());
    EXPECT_FALSE(second->isEnabled());
    EXPECT_FALSE(dialog.GetDlgItem(Accessibility::kSpareCheckId)->isVisible());
    EXPECT_FALSE(dialog.GetDlgItem(Accessibility::kSpareButtonId)->isVisible());
    EXPECT_TRUE(dialog.ControlById<PictureControl>(Accessibility::kPictureId)->isVisible());

    Type(first, "0");
    dialog.OnOK();
    ASSERT_EQ(ui.messages.size(), 1u);
    EXPECT_EQ(ui.messages[0].text, LoadLocalizedString(IDS_TOOL_CLEARANCE_REQUIRED));
    EXPECT_EQ(ui.messages[0].icon, ZebMsgIcon::Information);
    EXPECT_TRUE(dialog.isVisible());

    Type(first, "0.000001");
    secondSwitch->setChecked(true);
    EXPECT_TRUE(second->isEnabled());
    Type(second, "0");
    dialog.OnOK();
    ASSERT_EQ(ui.messages.size(), 2u);
    EXPECT_EQ(ui.messages[1].text, LoadLocalizedString(IDS_SECOND_TOOL_CLEARANCE_REQUIRED));
    EXPECT_DOUBLE_EQ(FindTyped<double>(rule, 6080)->values[0], 1.2);

    secondSwitch->setChecked(false);
    EXPECT_FALSE(second->isEnabled());
    dialog.OnOK();
    EXPECT_FALSE(dialog.isVisible());
    EXPECT_DOUBLE_EQ(FindTyped<double>(rule, 6080)->values[0], 0.000001);
    EXPECT_DOUBLE_EQ(FindTyped<double>(rule, 6092)->values[0], 0.0);
    EXPECT_DOUBLE_EQ(FindTyped<double>(rule, 6093)->values[0], 0.0);

    Accessibility switchedOn(&rule);
    ShowActive(&switchedOn);
    switchedOn.ControlById<QCheckBox>(Accessibility::kSecondSwitchId)->setChecked(true);
    Type(switchedOn.ControlById<CDoubleEditEx>(Accessibility::kSecondValueId), "3");
    switchedOn.OnOK();
    EXPECT_DOUBLE_EQ(FindTyped<double>(rule, 6092)->values[0], 3.0);
    EXPECT_DOUBLE_EQ(FindTyped<double>(rule, 6093)->values[0], 1.0);

    const std::string before = ExportedText(rule);
    {
        Accessibility cancelled(&rule);
        ShowActive(&cancelled);
        EXPECT_TRUE(
            cancelled.ControlById<CDoubleEditEx>(Accessibility::kSecondValueId)->isEnabled());
        cancelled.ControlById<QCheckBox>(Accessibility::kSecondSwitchId)->setChecked(false);
        Type(cancelled.ControlById<CDoubleEditEx>(Accessibility::kFirstValueId), "9");
        cancelled.reject();
    }
    EXPECT_EQ(ExportedText(rule), before);
}

// OK is offered while one of the four boxes is checked; a switched-on step needs at least
// 0.000001, a switched-off one is stored as typed; the choice of 9603 and the severity are stored.
TEST_F(FastenerSettingDialogsTest, BoltScrewCriteriaSwitchesAndSteps) {
    CZEBAssemblyBoltScrewRationalizationRule rule;
    BoltScrew dialog(&rule);
    ShowActive(&dialog);
    QWidget* ok = dialog.GetDlgItem(BoltScrew::kIdOk);
    auto* lengthOn = dialog.ControlById<QCheckBox>(BoltScrew::kLengthSwitchId);
    auto* lengthOp = dialog.ControlById<CWrapperComboCtrl>(BoltScrew::kLengthOperatorId);
    auto* length = dialog.ControlById<CDoubleEditEx>(BoltScrew::kLengthValueId);
    auto* diameter = dialog.ControlById<CDoubleEditEx>(BoltScrew::kDiameterValueId);
    EXPECT_EQ(lengthOp->itemText(0), ">=");
    EXPECT_EQ(lengthOp->itemText(1), ">");
    EXPECT_EQ(lengthOp->currentText(), ">=");
    EXPECT_EQ(length->text(), "4.0");
    EXPECT_EQ(diameter->text(), "2.0");
    EXPECT_TRUE(dialog.ControlById<QRadioButton>(BoltScrew::kTogetherId)->isChecked());

    const int boxes[] = {BoltScrew::kSameHeadId, BoltScrew::kSameMaterialId,
                         BoltScrew::kLengthSwitchId, BoltScrew::kDiameterSwitchId};
    for (int id : boxes) {
        ASSERT_TRUE(dialog.ControlById<QCheckBox>(id)->isChecked());
        EXPECT_TRUE(ok->isEnabled());
        dialog.ControlById<QCheckBox>(id)->click();
    }
    EXPECT_FALSE(ok->isEnabled());
    EXPECT_FALSE(length->isEnabled());
    EXPECT_FALSE(lengthOp->isEnabled());
    lengthOn->click();
    EXPECT_TRUE(ok->isEnabled());
    EXPECT_TRUE(length->isEnabled());

    Type(length, "0");
    dialog.OnOK();
    ASSERT_EQ(ui.messages.size(), 1u);
    EXPECT_EQ(ui.messages[0].text, LoadLocalizedString(IDS_LENGTH_STEP_REQUIRED));
    EXPECT_EQ(ui.messages[0].icon, ZebMsgIcon::Information);

    Type(length, "0.000001");
    lengthOp->setCurrentIndex(1);
    diameter->setText("0");  // switched off: accepted as it is
    dialog.ControlById<QRadioButton>(BoltScrew::kSeparateId)->setChecked(true);
    dialog.ControlById<CWrapperComboCtrl>(BoltScrew::kSeverityId)->setCurrentIndex(-1);
    dialog.OnOK();
    EXPECT_FALSE(dialog.isVisible());
    EXPECT_EQ(ui.messages.size(), 1u);
    const auto* lengthStep = FindTyped<double>(rule, 9026);
    const auto* diameterStep = FindTyped<double>(rule, 9027);
    EXPECT_EQ(lengthStep->op, ZebOp_Greater);
    EXPECT_TRUE(lengthStep->criteriaStatus);
    EXPECT_DOUBLE_EQ(lengthStep->values[0], 0.000001);
    EXPECT_FALSE(diameterStep->criteriaStatus);
    EXPECT_DOUBLE_EQ(diameterStep->values[0], 0.0);
    EXPECT_FALSE(rule.FindParameterInArray(9024)->GetParam()->status);
    EXPECT_FALSE(rule.FindParameterInArray(9025)->GetParam()->status);
    EXPECT_FALSE(rule.FindParameterInArray(9603)->GetParam()->status);
    EXPECT_EQ(rule.Severity, 0);
}

// A stored "=" opens with no operator chosen and is kept on OK, the drop-down then showing it;
// Cancel changes nothing; without hardware records the database button explains itself.
TEST_F(FastenerSettingDialogsTest, BoltScrewKeepsAnOperatorItDoesNotOfferAndCancelKeepsTheRule) {
    CZEBAssemblyBoltScrewRationalizationRule rule;
    FindTyped<double>(rule, 9027)->op = ZebOp_Equal;
    const std::string before = ExportedText(rule);
    {
        BoltScrew cancelled(&rule);
        ShowActive(&cancelled);
        cancelled.ControlById<QCheckBox>(BoltScrew::kSameHeadId)->click();
        Type(cancelled.ControlById<CDoubleEditEx>(BoltScrew::kLengthValueId), "7");
        cancelled.reject();
    }
    EXPECT_EQ(ExportedText(rule), before);

    BoltScrew dialog(&rule);
    ShowActive(&dialog);
    auto* diameterOp = dialog.ControlById<CWrapperComboCtrl>(BoltScrew::kDiameterOperatorId);
    EXPECT_EQ(diameterOp->currentIndex(), -1);
    dialog.OnOK();
    EXPECT_FALSE(dialog.isVisible());
    EXPECT_EQ(FindTyped<double>(rule, 9027)->op, ZebOp_Equal);
    EXPECT_EQ(diameterOp->placeholderText(), "=");

    const auto notAFolder = folder.Folder() / "not-a-folder";
    std::ofstream(notAFolder) << "x";
    ScopedDatabaseFolder::Point(notAFolder);
    BoltScrew noDatabase(&rule);
    ShowActive(&noDatabase);
    qobject_cast<QPushButton*>(noDatabase.GetDlgItem(BoltScrew::kHardwareDatabaseId))->click();
    ASSERT_EQ(ui.messages.size(), 1u);
    EXPECT_EQ(ui.messages[0].text, LoadLocalizedString(IDS_NO_HARDWARE_DATABASE));
    EXPECT_EQ(ui.messages[0].icon, ZebMsgIcon::Warning);
}

// The hole and slot alignment dialogs driven through their controls' ids.
#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QLabel>
#include <QTest>

#include "app/assembly_rules_app.h"
#include "controls/double_edit_ex.h"
#include "controls/wrapper_combo_ctrl.h"
#include "dialogs/parts/alignment_check_dlg.h"
#include "framework/ui/recording_ui_service.h"
#include "rules/hole_alignment_rule.h"
#include "rules/rule_record.h"
#include "rules/slot_alignment_rule.h"
#include "tests/support/exported_rule.h"
#include "tests/ui/qt_test_app.h"

namespace {
using Hole = CZEBSMHoleAlignmentCheckDlg;
using Slot = CZEBASMSlotAlignmentCheckDlg;

class AlignmentDialogsTest : public ::testing::Test {
protected:
    void SetUp() override { EnsureQtTestApp(); }
    CZebResourceScope scope;
    CZebRecordingUiService ui;
};
}  // namespace

// Both rows show operator, value and unit; the title comes from the dialog, not the rule; a
// half-typed number stores what it starts with and an empty one 0; the option boxes are the
// statuses of 7092 and 7094.
TEST_F(AlignmentDialogsTest, HoleRowsAndOptionsRoundTrip) {
    CZEBASMHoleAlignmentCheckRule rule;
    rule.DisplayName = L"Renamed";
    Hole d(&rule, L"in");
    ShowActive(&d);
    EXPECT_EQ(d.windowTitle().toStdWString(), LoadLocalizedString(IDS_RULE_HOLE_ALIGNMENT));
    auto* offsetOp = d.ControlById<CWrapperComboCtrl>(Hole::kOffsetOperatorId);
    ASSERT_EQ(offsetOp->count(), 2);
    EXPECT_EQ(offsetOp->itemText(0), "<");
    EXPECT_EQ(offsetOp->currentText(), "<=");
    EXPECT_EQ(d.ControlById<CDoubleEditEx>(Hole::kOffsetValueId)->text(), "0.5");
    EXPECT_EQ(d.ControlById<CDoubleEditEx>(Hole::kSecondValueId)->text(), "0.1");
    EXPECT_EQ(d.ControlById<QLabel>(Hole::kSecondUnitId)->text(), "in");
    EXPECT_TRUE(d.ControlById<QAbstractButton>(Hole::kThroughHolesId)->isChecked());
    EXPECT_EQ(d.ControlById<CWrapperComboCtrl>(6025)->currentIndex(), 0);

    offsetOp->setCurrentIndex(0);
    Type(d.ControlById<CDoubleEditEx>(Hole::kOffsetValueId), "0.5.5");
    d.ControlById<CDoubleEditEx>(Hole::kSecondValueId)->clear();
    d.ControlById<QAbstractButton>(Hole::kBlindHolesId)->setChecked(false);
    d.ControlById<QAbstractButton>(Hole::kThroughHolesId)->setChecked(false);
    d.ControlById<CWrapperComboCtrl>(6025)->setCurrentIndex(2);
    // A value that cannot be read is refused in its box, and nothing is stored.
    d.OnOK();
    EXPECT_TRUE(d.isVisible());
    ASSERT_EQ(ui.messages.size(), 1u);
    EXPECT_NE(ui.messages[0].text.find(L"0.5.5"), std::wstring::npos);
    EXPECT_EQ(QApplication::focusWidget(), d.ControlById<CDoubleEditEx>(Hole::kOffsetValueId));
    EXPECT_EQ(FindTyped<double>(rule, 7800)->op, ZebOp_LessEqual);
    d.ControlById<CDoubleEditEx>(Hole::kOffsetValueId)->setText("0,5");
    d.OnOK();
    EXPECT_FALSE(d.isVisible());
    const auto* offset = FindTyped<double>(rule, 7800);
    EXPECT_EQ(offset->op, ZebOp_Less);
    ASSERT_EQ(offset->values.GetSize(), 1);
    EXPECT_DOUBLE_EQ(offset->values[0], 0.5);
    EXPECT_DOUBLE_EQ(FindTyped<double>(rule, 9084)->values[0], 0.0);
    EXPECT_FALSE(rule.FindParameterInArray(7092)->GetParam()->status);
    EXPECT_FALSE(rule.FindParameterInArray(7094)->GetParam()->status);
    EXPECT_EQ(rule.Severity, 3);
}

// The slot offset must be entered: an empty one is refused (7093) and nothing is stored. The
// title is the rule's name; the second offset's switch is its status; the two options are the
// first values of 9608 and 9606; Cancel keeps the rule.
TEST_F(AlignmentDialogsTest, SlotNeedsItsOffsetAndStoresSwitchesAndOptions) {
    CZEBASMSlotAlignmentCheckRule rule(IDS_RULE_SLOT_ALIGNMENT, IDS_SUMMARY_SLOT_ALIGNMENT, 13090);
    rule.DisplayName = L"Slots of the frame";
    ExportedText(rule);  // the first export rebuilds the summary the constructor left open
    const std::string before = ExportedText(rule);
    {
        Slot d(&rule, L"mm");
        ShowActive(&d);
        d.ControlById<QAbstractButton>(Slot::kWidthId)->setChecked(true);
        d.reject();
    }
    EXPECT_EQ(ExportedText(rule), before);

    Slot d(&rule, L"mm");
    ShowActive(&d);
    EXPECT_EQ(d.windowTitle(), "Slots of the frame");
    auto* second = d.ControlById<QAbstractButton>(Slot::kSecondSwitchId);
    EXPECT_TRUE(second->isChecked());
    EXPECT_EQ(d.ControlById<CDoubleEditEx>(Slot::kSecondValueId)->text(), "0.5");
    d.ControlById<CDoubleEditEx>(Slot::kOffsetValueId)->clear();
    d.ControlById<CWrapperComboCtrl>(Slot::kOffsetOperatorId)->setCurrentIndex(0);
    d.OnOK();
    EXPECT_TRUE(d.isVisible());
    ASSERT_EQ(ui.messages.size(), 1u);
    EXPECT_EQ(ui.messages[0].text, LoadLocalizedString(IDS_SLOT_OFFSET_REQUIRED));
    EXPECT_EQ(ui.messages[0].icon, ZebMsgIcon::Information);
    EXPECT_EQ(ExportedText(rule), before);

    Type(d.ControlById<CDoubleEditEx>(Slot::kOffsetValueId), "0.25");
    second->setChecked(false);
    Type(d.ControlById<CDoubleEditEx>(Slot::kSecondValueId), "1.5");
    d.ControlById<QAbstractButton>(Slot::kDirectionId)->setChecked(true);
    d.OnOK();
    EXPECT_FALSE(d.isVisible());
    const auto* offset = FindTyped<double>(rule, 8004);
    EXPECT_EQ(offset->op, ZebOp_Less);
    EXPECT_DOUBLE_EQ(offset->values[0], 0.25);
    const auto* ends = FindTyped<double>(rule, 9503);
    EXPECT_FALSE(ends->status);
    EXPECT_DOUBLE_EQ(ends->values[0], 1.5);
    EXPECT_TRUE(FindTyped<bool>(rule, 9606)->values[0]);
    EXPECT_FALSE(FindTyped<bool>(rule, 9608)->values[0]);
}

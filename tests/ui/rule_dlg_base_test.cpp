#include "framework/ui/rule_dlg_base.h"

#include <gtest/gtest.h>

#include <QKeyEvent>
#include <QLineEdit>
#include <QPushButton>
#include <QSignalSpy>
#include <QTest>
#include <QVBoxLayout>

#include "app/assembly_rules_app.h"
#include "framework/ui/hot_key.h"
#include "framework/ui/picture_control.h"
#include "framework/ui/recording_ui_service.h"
#include "tests/ui/qt_test_app.h"

namespace {
// Records which widgets key presses were offered at, and consumes F2.
class RecordingDlg : public CZEBRuleDlgBase {
public:
    RecordingDlg() : CZEBRuleDlgBase(9081, 13050, L"/opt/vantor/help.chm", nullptr) {
        new QVBoxLayout(Body());
    }
    bool OnInitDialog() override {
        ++inits;
        return CZEBRuleDlgBase::OnInitDialog();
    }
    bool PreTranslateMessage(QObject* target, QEvent* event) override {
        if (event->type() != QEvent::KeyPress) return false;
        keyTargets.push_back(target);
        return static_cast<QKeyEvent*>(event)->key() == Qt::Key_F2;
    }
    int inits = 0;
    std::vector<QObject*> keyTargets;
};
}  // namespace

TEST(RuleDlgBase, ControlsAreFoundByIdAndLaterChildrenArePreTranslatedOnce) {
    EnsureQtTestApp();
    CZebResourceScope scope;
    RecordingDlg dlg;
    EXPECT_EQ(dlg.ControlById<QPushButton>(CZEBRuleDlgBase::kIdOk)->text(), "OK");
    EXPECT_NE(dlg.GetDlgItem(CZEBRuleDlgBase::kIdCancel), nullptr);
    EXPECT_NE(dlg.GetDlgItem(CZEBRuleDlgBase::kIdHelp), nullptr);
    EXPECT_EQ(dlg.GetDlgItem(6066), nullptr);

    // A control added after construction, inside a container added after construction.
    auto* box = new QWidget(dlg.Body());
    dlg.Body()->layout()->addWidget(box);
    auto* edit = new QLineEdit(box);
    SetZebControlId(edit, 6066);
    EXPECT_EQ(dlg.GetDlgItem(6066), edit);

    ShowActive(&dlg);
    EXPECT_EQ(dlg.inits, 1);
    EXPECT_FALSE(dlg.GetPictureControl()->pixmap().isNull());

    edit->setFocus();
    QTest::keyClick(edit, Qt::Key_A);
    EXPECT_EQ(edit->text(), "a");
    // Offered at the line edit only, not again on its way up to the dialog.
    EXPECT_EQ(dlg.keyTargets, std::vector<QObject*>{edit});
    QTest::keyClick(edit, Qt::Key_F2);
    EXPECT_EQ(dlg.keyTargets.size(), 2u);
    dlg.hide();
    dlg.show();
    EXPECT_EQ(dlg.inits, 1);
}

TEST(RuleDlgBase, OkCancelAndHelp) {
    EnsureQtTestApp();
    CZebRecordingUiService ui;
    RecordingDlg dlg;
    ShowActive(&dlg);
    QTest::mouseClick(dlg.ControlById<QPushButton>(CZEBRuleDlgBase::kIdHelp), Qt::LeftButton);
    EXPECT_EQ(ui.opened, std::vector<std::wstring>{L"/opt/vantor/help.chm"});
    QTest::mouseClick(dlg.ControlById<QPushButton>(CZEBRuleDlgBase::kIdOk), Qt::LeftButton);
    EXPECT_EQ(dlg.result(), 1);
    EXPECT_FALSE(dlg.isVisible());

    ShowActive(&dlg);
    QTest::mouseClick(dlg.ControlById<QPushButton>(CZEBRuleDlgBase::kIdCancel), Qt::LeftButton);
    EXPECT_EQ(dlg.result(), 2);
    ShowActive(&dlg);
    QTest::keyClick(&dlg, Qt::Key_Escape);
    EXPECT_EQ(dlg.result(), 2);
}

TEST(RuleDlgBase, ImportHotKeyWorksOnlyWhileRegistered) {
    EnsureQtTestApp();
    RecordingDlg dlg;
    CZebHotKey hotKey(&dlg);
    QSignalSpy pressed(&hotKey, &CZebHotKey::Pressed);
    ShowActive(&dlg);
    QTest::keyClick(&dlg, Qt::Key_I, Qt::ControlModifier);
    EXPECT_EQ(pressed.count(), 0);
    hotKey.Register();
    QTest::keyClick(&dlg, Qt::Key_I, Qt::ControlModifier);
    ASSERT_EQ(pressed.count(), 1);
    EXPECT_EQ(pressed[0][0].toInt(), 1);
    hotKey.Unregister();
    QTest::keyClick(&dlg, Qt::Key_I, Qt::ControlModifier);
    EXPECT_EQ(pressed.count(), 1);
}

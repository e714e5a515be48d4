#include "framework/ui/rule_dlg_base.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QKeyEvent>
#include <QLineEdit>
#include <QPushButton>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <QUrl>
#include <QVBoxLayout>

#include "app/assembly_rules_app.h"
#include "framework/ui/hot_key.h"
#include "framework/ui/picture_control.h"
#include "framework/ui/recording_ui_service.h"
#include "framework/ui/ui_service.h"
#include "tests/ui/qt_test_app.h"

namespace {
// Records which widgets key presses were offered at, and consumes F2.
class RecordingDlg : public CZEBRuleDlgBase {
public:
    explicit RecordingDlg(const std::wstring& helpFile = L"/opt/vantor/vantor.html")
        : CZEBRuleDlgBase(9081, 13050, helpFile, nullptr) {
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

// Writes a small help file at `path`, making its folders.
bool WriteHelpFile(const QString& path) {
    if (!QDir().mkpath(QFileInfo(path).path())) return false;
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write("<html><body></body></html>") > 0;
}

void ClickHelp(CZEBRuleDlgBase& dlg) {
    QTest::mouseClick(dlg.ControlById<QPushButton>(CZEBRuleDlgBase::kIdHelp), Qt::LeftButton);
}

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

// The rule's image shows beside the controls unless a picture control of the dialog shows a
// bitmap of its own: the same picture is never shown twice.
TEST(RuleDlgBase, TheRuleImageGivesWayToTheDialogsOwnPicture) {
    EnsureQtTestApp();
    CZebResourceScope scope;
    RecordingDlg plain;
    ShowActive(&plain);
    EXPECT_TRUE(plain.GetPictureControl()->isVisible());

    RecordingDlg pictured;
    auto* own = new PictureControl(pictured.Body());
    pictured.Body()->layout()->addWidget(own);
    ASSERT_TRUE(own->SetBitmapId(13010));
    ShowActive(&pictured);
    EXPECT_TRUE(own->isVisible());
    EXPECT_FALSE(pictured.GetPictureControl()->isVisible());
}

TEST(RuleDlgBase, OkAndCancel) {
    EnsureQtTestApp();
    CZebRecordingUiService ui;
    RecordingDlg dlg;
    ShowActive(&dlg);
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

TEST(RuleDlgBase, HelpOpensTheHelpFileAtTheDialogsSection) {
    EnsureQtTestApp();
    QTemporaryDir root;
    ASSERT_TRUE(root.isValid());
    // A folder name with a blank and a '#', which a URL must not take literally.
    const QString file = root.filePath("Vantor Hilfe #2/res/vantor.html");
    ASSERT_TRUE(WriteHelpFile(file));
    CZebRecordingUiService ui;
    RecordingDlg dlg(file.toStdWString());
    EXPECT_EQ(dlg.GetHelpTopic(), L"");
    dlg.SetHelpTopic(L"fastener-clearance");
    EXPECT_EQ(dlg.GetHelpTopic(), L"fastener-clearance");
    ShowActive(&dlg);

    ClickHelp(dlg);
    ASSERT_EQ(ui.opened.size(), 1u);
    const QString opened = QString::fromStdWString(ui.opened[0]);
    EXPECT_TRUE(opened.startsWith("file:///")) << opened.toStdString();
    EXPECT_TRUE(opened.endsWith("/Vantor%20Hilfe%20%232/res/vantor.html#fastener-clearance"))
        << opened.toStdString();
    const QUrl url(opened);
    EXPECT_EQ(url.toLocalFile().toStdString(), file.toStdString());
    EXPECT_EQ(url.fragment().toStdString(), "fastener-clearance");
    EXPECT_TRUE(ui.messages.empty());

    // Without a topic the file opens at its start: no fragment at all.
    dlg.SetHelpTopic(L"");
    ClickHelp(dlg);
    ASSERT_EQ(ui.opened.size(), 2u);
    const QUrl start(QString::fromStdWString(ui.opened[1]));
    EXPECT_FALSE(start.hasFragment());
    EXPECT_EQ(start.toLocalFile().toStdString(), file.toStdString());
    EXPECT_EQ(ui.opened[1].find(L'#'), std::wstring::npos);

    // The desktop could not open it: said, not swallowed.
    ui.AnswerShellOpen(false);
    ClickHelp(dlg);
    EXPECT_EQ(ui.opened.size(), 3u);
    ASSERT_EQ(ui.messages.size(), 1u);
    EXPECT_EQ(ui.messages[0].icon, ZebMsgIcon::Warning);
    EXPECT_NE(ui.messages[0].text.find(file.toStdWString()), std::wstring::npos);
    EXPECT_NE(ui.messages[0].text.find(L"could not be opened"), std::wstring::npos);
}

TEST(RuleDlgBase, MissingHelpFileIsReportedAndNothingOpens) {
    EnsureQtTestApp();
    QTemporaryDir root;
    ASSERT_TRUE(root.isValid());
    CZebRecordingUiService ui;
    const std::wstring missing = root.filePath("res/en/vantor.html").toStdWString();
    RecordingDlg dlg(missing);
    dlg.SetHelpTopic(L"rule-hole-alignment");
    ShowActive(&dlg);
    ClickHelp(dlg);
    EXPECT_TRUE(ui.opened.empty());
    ASSERT_EQ(ui.messages.size(), 1u);
    EXPECT_EQ(ui.messages[0].caption, L"Vantor");
    EXPECT_EQ(ui.messages[0].icon, ZebMsgIcon::Warning);
    EXPECT_EQ(ui.messages[0].text, L"The help file " + missing + L" is missing.");
    EXPECT_TRUE(dlg.isVisible());

    // A folder in place of the file, and no help file named at all, are missing too.
    RecordingDlg folder(root.path().toStdWString());
    ShowActive(&folder);
    ClickHelp(folder);
    RecordingDlg unnamed(L"");
    ShowActive(&unnamed);
    ClickHelp(unnamed);
    EXPECT_TRUE(ui.opened.empty());
    ASSERT_EQ(ui.messages.size(), 3u);
    EXPECT_EQ(ui.messages[1].icon, ZebMsgIcon::Warning);
    EXPECT_EQ(ui.messages[2].text, L"The help file is missing.");
}

TEST(HelpUrl, EncodesThePathAndReadsBackToTheSameFile) {
    const QString odd = "/srv/Vantor Help #3/100% fertig/Größe/vantor.html";
    const QString text = QString::fromStdWString(ZebHelpUrl(odd.toStdWString(), L"topic-12"));
    EXPECT_EQ(
        text.toStdString(),
        "file:///srv/Vantor%20Help%20%233/100%25%20fertig/Gr%C3%B6%C3%9Fe/vantor.html#topic-12");
    const QUrl url(text);
    EXPECT_EQ(url.toLocalFile().toStdString(), odd.toStdString());
    EXPECT_EQ(url.fragment().toStdString(), "topic-12");
    EXPECT_EQ(ZebHelpUrl(odd.toStdWString(), L""), text.left(text.indexOf('#')).toStdWString());
    // A relative path is taken from the current folder.
    const QUrl relative(QString::fromStdWString(ZebHelpUrl(L"res/en/vantor.html", L"")));
    EXPECT_EQ(relative.toLocalFile().toStdString(),
              QDir::current().absoluteFilePath("res/en/vantor.html").toStdString());
}

// The editor's assembly check over the built module and engine: the STEP file and the report's
// file chosen through the recording UI service, the findings read from the dock's table.
#include <gtest/gtest.h>

#include <BRepPrimAPI_MakeBox.hxx>
#include <QAbstractItemModel>
#include <QAction>
#include <QApplication>
#include <QComboBox>
#include <QDockWidget>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QProgressDialog>
#include <QPushButton>
#include <QTableView>
#include <QTableWidget>
#include <QTest>
#include <QTimer>
#include <fstream>
#include <sstream>

#include "engine/step_writer.h"
#include "framework/text_convert.h"
#include "framework/ui/recording_ui_service.h"
#include "framework/zeb_rule.h"
#include "host/editor/check_assembly.h"
#include "host/editor/rule_set_editor.h"
#include "tests/database/db_test_support.h"
#include "tests/engine/joint_shapes.h"
#include "tests/engine/shared_assembly.h"
#include "tests/host/editor_fixture.h"
#include "tests/support/scoped_env.h"

namespace {
TopoDS_Shape Box(double x, double y, double z) {
    return BRepPrimAPI_MakeBox(gp_Pnt(x, y, z), 10, 10, 10).Shape();
}

std::string FileText(const std::filesystem::path& path) {
    std::ifstream in(path, std::ios::binary);
    std::stringstream text;
    text << in.rdbuf();
    return text.str();
}

class EditorCheckTest : public EditorFixture {
protected:
    void SetUp() override {
        EditorFixture::SetUp();
        if (HasFatalFailure()) return;
        std::string error;
        // a and b overlap by 2 x 10 x 10; c sits 0.05 above both, nearer than the default 0.1.
        assembly = (folder.Folder() / "boxes.stp").string();
        ASSERT_TRUE(WriteStepAssembly(assembly, L"top",
                                      {{L"a", Box(0, 0, 0), L"", L""},
                                       {L"b", Box(8, 0, 0), L"", L""},
                                       {L"c", Box(0, 0, 10.05), L"", L""}},
                                      "MM", error))
            << error;
    }

    // The row of the document's rule that has parameter `id`.
    static int RuleWith(CRuleSetEditor& editor, long id) {
        for (size_t row = 0; row < editor.Document().RuleCount(); ++row)
            if (const CZebRule* rule = editor.Document().Rule(row);
                rule && const_cast<CZebRule*>(rule)->FindParameterInArray(id))
                return static_cast<int>(row);
        return -1;
    }
    // The findings as the table shows them, one line per row: "rule|severity|parts|value|limit".
    static std::vector<std::string> Shown(const QTableView& view) {
        std::vector<std::string> rows;
        const QAbstractItemModel& model = *view.model();
        for (int row = 0; row < model.rowCount(); ++row) {
            QStringList cells;
            for (int column = 0; column < CAssemblyCheck::kMessageColumn; ++column)
                cells << model.index(row, column).data().toString();
            rows.push_back(cells.join('|').toStdString());
        }
        return rows;
    }

    std::string assembly;
};
}  // namespace

// The check runs on the rule set as it stands, unsaved changes included; the findings can be
// filtered by rule and sorted by value; activating one chooses its rule; the report is saved in
// the format its name asks for; a file that is not STEP is told, and the last findings stay.
TEST_F(EditorCheckTest, FindingsFromTheOpenRuleSet) {
    CRuleSetEditor editor(module);
    const int interference = RuleWith(editor, 6067);
    const int clearance = RuleWith(editor, 2062);
    ASSERT_GE(interference, 0);
    ASSERT_GE(clearance, 0);
    // Unsaved: interference is Info.
    editor.Table()->setCurrentCell(interference, 0);
    editor.SetCurrentSeverity(5);
    const QString interferenceName = editor.Table()->item(interference, 0)->text();
    const QString clearanceName = editor.Table()->item(clearance, 0)->text();

    QAction* check = MenuAction(editor, "Check Assembly...");
    ASSERT_NE(check, nullptr);
    EXPECT_EQ(check->shortcut(), QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_A));
    ui.ChooseFiles({FromUtf8(assembly)});
    check->trigger();
    ASSERT_EQ(ui.choosers.size(), 1u);
    EXPECT_NE(ui.choosers[0].filter.find(L"*.stp"), std::wstring::npos);
    ASSERT_TRUE(ui.messages.empty()) << ToUtf8(ui.messages[0].text);
    CAssemblyCheck& result = *editor.AssemblyCheck();
    EXPECT_FALSE(result.Dock()->isHidden());
    QTableView& view = *result.Findings();
    view.sortByColumn(CAssemblyCheck::kValueColumn, Qt::DescendingOrder);
    const std::string a = "top/a", b = "top/b", c = "top/c";
    const std::vector<std::string> all = {
        interferenceName.toStdString() + "|Info|" + a + "  |  " + b + "|200|",
        clearanceName.toStdString() + "|Critical|" + a + "  |  " + c + "|0.05|0.1",
        clearanceName.toStdString() + "|Critical|" + b + "  |  " + c + "|0.05|0.1",
    };
    std::vector<std::string> shown = Shown(view);
    ASSERT_EQ(shown.size(), 3u);
    // The two clearance findings are equal in value; their order between them is the sort's.
    EXPECT_EQ(shown[0], all[0]);
    std::sort(shown.begin() + 1, shown.end());
    EXPECT_EQ(std::vector<std::string>(shown.begin() + 1, shown.end()),
              std::vector<std::string>(all.begin() + 1, all.end()));

    auto* rules = result.Dock()->findChild<QComboBox*>(CAssemblyCheck::kRuleFilterName);
    ASSERT_NE(rules, nullptr);
    rules->setCurrentIndex(rules->findText(interferenceName));
    EXPECT_EQ(Shown(view), std::vector<std::string>{all[0]});
    rules->setCurrentIndex(rules->findText(clearanceName));
    EXPECT_EQ(Shown(view).size(), 2u);

    // Enter on a finding chooses its rule, even one the rule filter hides.
    editor.Filter()->setText("no such rule");
    view.setCurrentIndex(view.model()->index(0, 0));
    QTest::keyClick(&view, Qt::Key_Return);
    EXPECT_TRUE(editor.Filter()->text().isEmpty());
    EXPECT_EQ(editor.Table()->currentRow(), clearance);

    rules->setCurrentIndex(0);
    const std::filesystem::path json = folder.Folder() / "report.json",
                                html = folder.Folder() / "report.html";
    auto* save = result.Dock()->findChild<QPushButton*>(CAssemblyCheck::kSaveName);
    ASSERT_NE(save, nullptr);
    ui.ChooseFiles({json.wstring()});
    save->click();
    ui.ChooseFiles({html.wstring()});
    save->click();
    const std::string jsonText = FileText(json), htmlText = FileText(html);
    EXPECT_NE(jsonText.find("\"parts\": 3"), std::string::npos) << jsonText;
    EXPECT_NE(jsonText.find("\"value\": 200,"), std::string::npos) << jsonText;
    EXPECT_NE(htmlText.find("<!DOCTYPE html>"), std::string::npos);
    EXPECT_NE(htmlText.find("Findings: 3"), std::string::npos);

    const std::filesystem::path text = folder.Folder() / "words.stp";
    std::ofstream(text) << "just some words\n";
    ui.ChooseFiles({text.wstring()});
    check->trigger();
    ASSERT_EQ(ui.messages.size(), 1u);
    EXPECT_NE(ui.messages[0].text.find(L"not a readable STEP file"), std::wstring::npos)
        << ToUtf8(ui.messages[0].text);
    EXPECT_EQ(ui.messages[0].icon, ZebMsgIcon::Error);
    EXPECT_EQ(result.Report().findings.size(), 3u);
    // A cancelled chooser checks nothing.
    ui.CancelChooser();
    check->trigger();
    EXPECT_EQ(ui.messages.size(), 1u);
    // The editor works on: its document is the module's again.
    editor.Table()->setCurrentCell(interference, 0);
    editor.SetCurrentSeverity(4);
    EXPECT_EQ(editor.Document().Row(static_cast<size_t>(interference)).severity, 4);
}

// Cancel in the progress dialog stops the check: no findings, no message.
TEST_F(EditorCheckTest, CancelStopsTheCheck) {
    const std::string shared = SharedAssembly();
    CRuleSetEditor editor(module);
    bool cancelled = false;
    QTimer poll;
    QObject::connect(&poll, &QTimer::timeout, [&] {
        if (QProgressDialog* progress = editor.findChild<QProgressDialog*>();
            progress && !cancelled) {
            progress->cancel();
            cancelled = true;
        }
    });
    poll.start(50);
    EXPECT_EQ(editor.AssemblyCheck()->Check(editor.Document().Snapshot(), shared),
              ZebCheckCancelled);
    EXPECT_TRUE(cancelled);
    EXPECT_TRUE(ui.messages.empty());
    EXPECT_TRUE(editor.AssemblyCheck()->Dock()->isHidden());
}

// The recommended thread pairs in the editor: an M8 bolt in an M10 nut against M8 / M8 is one
// finding, filed under its rule.
TEST_F(EditorCheckTest, RecommendedThreadTypes) {
    const std::string joint = (folder.Folder() / "joint.stp").string();
    std::string error;
    ASSERT_TRUE(WriteStepAssembly(
        joint, L"top",
        {{L"bolt", joint_shapes::Bolt(gp_Pnt(0, 0, 20), -gp::DZ(), 8, 25), L"", L""},
         {L"nut", joint_shapes::Nut(gp_Pnt(0, 0, 0), -gp::DZ(), 10, 6), L"", L""}},
        "MM", error))
        << error;
    IDatabaseCollector* db = zeb_db::ZEBDataHelper::getInstance();
    ASSERT_NE(db, nullptr);
    for (const wchar_t* name : {L"bolt", L"nut"}) ASSERT_EQ(db->AddFastenerName(name), ZebDbOk);
    CRuleSetEditor editor(module);
    const int threads = RuleWith(editor, 7072);
    ASSERT_GE(threads, 0);
    std::string settings = editor.Document().Snapshot();
    const std::string pairs = "<Parameter Name=\"\" Type=\"7072\" Status=\"1\">";
    const size_t at = settings.find(pairs);
    ASSERT_NE(at, std::string::npos);
    settings.insert(at + pairs.size(), "<Value Attribute1=\"M8\" Attribute2=\"M8\"/>");
    ASSERT_EQ(editor.AssemblyCheck()->Check(settings, joint), ZebCheckDone);
    const QString name = editor.Table()->item(threads, 0)->text();
    EXPECT_EQ(Shown(*editor.AssemblyCheck()->Findings()),
              std::vector<std::string>{name.toStdString() + "|Major|top/bolt  |  top/nut||"});
    const std::vector<ZebFinding>& findings = editor.AssemblyCheck()->Report().findings;
    ASSERT_EQ(findings.size(), 1u);
    EXPECT_EQ(findings[0].message,
              L"M8x1.25 bolt (top/bolt) in M10x1.5 nut (top/nut): not a recommended pair of "
              L"threads; recommended M8 / M8");
}

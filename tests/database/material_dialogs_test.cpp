// The material database editor and the material pair editor, driven as a user drives them, over
// a real database in a folder of the test's own (the starter catalogue of an empty database).
#include <gtest/gtest.h>

#include <QLineEdit>
#include <QPushButton>
#include <QTest>
#include <QTimer>
#include <QTreeWidget>
#include <algorithm>
#include <cstdio>
#include <fstream>
#include <functional>
#include <list>
#include <set>

#include "app/assembly_rules_app.h"
#include "dialogs/database/material_db_dlg.h"
#include "dialogs/database/material_pair_dlg.h"
#include "dialogs/database/material_tree.h"
#include "framework/resource_library.h"
#include "framework/ui/recording_ui_service.h"
#include "rules/contact_material_rule.h"
#include "tests/database/db_test_support.h"
#include "tests/database/failing_database.h"
#include "tests/ui/qt_test_app.h"

namespace {
using Names = std::vector<std::wstring>;
using Selection = std::vector<std::pair<std::wstring, std::vector<std::wstring>>>;
using DbDlg = CEditMaterialDBDlg;

std::wstring Text(ZebStringId id) { return LoadLocalizedString(id); }

// The materials as another process sees them: `vantor-rules db materials list` on the test's
// database folder.
std::string HostMaterialsList() {
    std::string out;
    FILE* pipe = ::popen(VANTOR_BUILD_DIR "/bin/vantor-rules db materials list 2>&1", "r");
    if (!pipe) return "popen failed";
    char buffer[4096];
    while (size_t n = std::fread(buffer, 1, sizeof buffer, pipe)) out.append(buffer, n);
    const int status = ::pclose(pipe);
    return status == 0 ? out : "exit " + std::to_string(status) + ": " + out;
}

Names Children(const QTreeWidgetItem* item) {
    Names names;
    for (int i = 0; item && i < item->childCount(); ++i)
        names.push_back(item->child(i)->text(0).toStdWString());
    return names;
}

Names ServiceGroups() {
    std::list<std::wstring> groups;
    EXPECT_EQ(zeb_db::ZEBDataHelper::getInstance()->GetMaterialGroups(groups, 0), ZebDbOk);
    return Names(groups.begin(), groups.end());
}

QTreeWidgetItem* GroupItem(CZebMaterialTree& tree, const std::wstring& group) {
    QTreeWidgetItem* root = tree.Root();
    for (int i = 0; root && i < root->childCount(); ++i)
        if (root->child(i)->text(0).toStdWString() == group) return root->child(i);
    return nullptr;
}

int ItemCount(const QTreeWidgetItem* item) {
    int count = 1;
    for (int i = 0; i < item->childCount(); ++i) count += ItemCount(item->child(i));
    return count;
}

bool Checked(QTreeWidgetItem* item) { return CZebMaterialTree::IsChecked(item); }

Names CheckedItems(CZebMaterialTree& tree) {
    Names names;
    std::function<void(QTreeWidgetItem*)> visit = [&](QTreeWidgetItem* item) {
        if (Checked(item)) names.push_back(item->text(0).toStdWString());
        for (int i = 0; i < item->childCount(); ++i) visit(item->child(i));
    };
    if (tree.Root()) visit(tree.Root());
    return names;
}

// The user selects the item and presses Space, which toggles its check box.
void ToggleCheck(CZebMaterialTree& tree, QTreeWidgetItem* item) {
    ASSERT_NE(item, nullptr);
    tree.Widget()->setCurrentItem(item);
    QTest::keyClick(tree.Widget(), Qt::Key_Space);
}

// A click on the item's label (not its check box).
void ClickLabel(CZebMaterialTree& tree, QTreeWidgetItem* item) {
    ASSERT_NE(item, nullptr);
    QTreeWidget* widget = tree.Widget();
    widget->scrollToItem(item);
    const QRect rect = widget->visualItemRect(item);
    QTest::mouseClick(widget->viewport(), Qt::LeftButton, {},
                      QPoint(rect.right() - 4, rect.center().y()));
}

struct DbDialog {
    explicit DbDialog(CZebRule* rule) : dlg(nullptr, rule) { ShowActive(&dlg); }
    QLineEdit* field(int id) { return dlg.ControlById<QLineEdit>(id); }
    QPushButton* button(int id) { return dlg.ControlById<QPushButton>(id); }
    CZebMaterialTree& tree() { return dlg.GetTree(); }
    std::wstring group() { return field(DbDlg::kGroupFieldId)->text().toStdWString(); }
    std::wstring material() { return field(DbDlg::kMaterialFieldId)->text().toStdWString(); }
    void type(const QString& group, const QString& material) {
        field(DbDlg::kGroupFieldId)->setText(group);
        field(DbDlg::kMaterialFieldId)->setText(material);
    }
    QTreeWidgetItem* item(const std::wstring& group, const std::wstring& material) {
        return tree().FindMaterial(group, material);
    }
    DbDlg dlg;
};

class MaterialDialogTest : public ::testing::Test {
protected:
    void SetUp() override { before = HostMaterialsList(); }
    // The message `index` with the database editor's caption: its text and icon.
    void ExpectMessage(size_t index, const std::wstring& text, ZebMsgIcon icon) {
        ASSERT_LT(index, ui.messages.size());
        EXPECT_EQ(ui.messages[index].caption, Text(IDS_MATERIAL_DATABASE_TITLE));
        EXPECT_EQ(ui.messages[index].text, text);
        EXPECT_EQ(ui.messages[index].icon, icon);
    }
    ScopedDatabaseFolder folder;
    CZebRecordingUiService ui;
    CZEBAssemblyCheckContactMaterialRule rule;
    std::string before;
};
}  // namespace

TEST_F(MaterialDialogTest, TreeShowsRootGroupsInServiceOrderAndSortedMaterials) {
    ASSERT_NE(before.find("Steels\tC45"), std::string::npos) << before;
    DbDialog d(&rule);
    QTreeWidgetItem* root = d.tree().Root();
    ASSERT_NE(root, nullptr);
    EXPECT_EQ(d.tree().Widget(), d.dlg.GetDlgItem(DbDlg::kTreeId));
    EXPECT_EQ(root->text(0).toStdWString(), TrimBlanksAndTabs(Text(IDS_MATERIALS_ROOT)));
    EXPECT_EQ(Children(root), ServiceGroups());
    EXPECT_EQ(Children(GroupItem(d.tree(), L"Steels")),
              (Names{L"11SMnPb30", L"42CrMo4", L"C45", L"S235JR", L"S355J2"}));
    EXPECT_TRUE(root->isExpanded());
    EXPECT_TRUE(root->flags() & Qt::ItemIsUserCheckable);
    EXPECT_TRUE(CheckedItems(d.tree()).empty());

    // Opening: empty fields, the root highlighted, Delete on, Add off and OK the default.
    EXPECT_EQ(d.tree().Highlighted(), root);
    EXPECT_EQ(d.group(), L"");
    EXPECT_EQ(d.material(), L"");
    EXPECT_TRUE(d.button(DbDlg::kDeleteId)->isEnabled());
    EXPECT_FALSE(d.button(DbDlg::kAddId)->isEnabled());
    EXPECT_TRUE(d.button(DbDlg::kIdOk)->isDefault());
    EXPECT_EQ(d.dlg.windowTitle().toStdWString(), Text(IDS_MATERIAL_DATABASE_TITLE));
    d.button(DbDlg::kIdHelp)->click();
    ASSERT_EQ(ui.opened.size(), 1u);
    EXPECT_NE(ui.opened[0].find(L"vantor.html#material-database-dialog"), std::wstring::npos);
}

TEST_F(MaterialDialogTest, WithoutADatabaseTheTreeStaysEmptyAndNothingIsAdded) {
    std::ofstream(folder.File()) << "not a database";
    ASSERT_EQ(zeb_db::ZEBDataHelper::getInstance(), nullptr);
    DbDialog d(&rule);
    EXPECT_EQ(d.tree().Widget()->topLevelItemCount(), 0);
    EXPECT_FALSE(d.button(DbDlg::kDeleteId)->isEnabled());
    d.type("Woods", "Oak");
    d.button(DbDlg::kAddId)->click();
    ExpectMessage(0, Text(IDS_DATABASE_SAVE_FAILED), ZebMsgIcon::Error);
    EXPECT_EQ(d.tree().Widget()->topLevelItemCount(), 0);
    EXPECT_TRUE(d.dlg.GetAddedPairs().empty());

    MaterialChoice target{{L"Kept", {}}};
    CEditMaterialPairDlg pair(nullptr, &rule, target, {L"Kept"});
    EXPECT_EQ(pair.GetTree().Root(), nullptr);
    pair.accept();
    EXPECT_TRUE(target.empty());
}

TEST_F(MaterialDialogTest, HighlightFillsTheFieldsAndTheFieldsDecideAdd) {
    DbDialog d(&rule);
    ClickLabel(d.tree(), d.item(L"Plastics", L"PEEK"));
    EXPECT_EQ(d.group(), L"Plastics");
    EXPECT_EQ(d.material(), L"PEEK");
    // Both fields hold text: Add is on and takes Enter.
    EXPECT_TRUE(d.button(DbDlg::kAddId)->isEnabled());
    EXPECT_TRUE(d.button(DbDlg::kAddId)->isDefault());
    EXPECT_FALSE(d.button(DbDlg::kIdOk)->isDefault());

    ClickLabel(d.tree(), GroupItem(d.tree(), L"Brass"));
    EXPECT_EQ(d.group(), L"Brass");
    EXPECT_EQ(d.material(), L"");
    EXPECT_FALSE(d.button(DbDlg::kAddId)->isEnabled());
    EXPECT_TRUE(d.button(DbDlg::kIdOk)->isDefault());
    EXPECT_TRUE(d.button(DbDlg::kDeleteId)->isEnabled());

    d.type("Brass", " \t ");
    EXPECT_FALSE(d.button(DbDlg::kAddId)->isEnabled());

    ClickLabel(d.tree(), d.tree().Root());
    EXPECT_EQ(d.group(), L"");
    EXPECT_EQ(d.material(), L"");
    EXPECT_FALSE(d.button(DbDlg::kDeleteId)->isEnabled());
    EXPECT_FALSE(d.field(DbDlg::kGroupFieldId)->isEnabled());
    EXPECT_FALSE(d.field(DbDlg::kMaterialFieldId)->isEnabled());

    // The keyboard moves the highlight too.
    d.tree().Widget()->setFocus();
    d.tree().Widget()->setCurrentItem(d.item(L"Steels", L"C45"));
    EXPECT_EQ(d.group(), L"Steels");
    EXPECT_EQ(d.material(), L"C45");
}

// A material named like a group, or already in some group, is refused before anything is stored;
// a new one is stored, shown checked with the other checks kept, and reported.
TEST_F(MaterialDialogTest, AddRefusesKnownNamesAndStoresNewOnes) {
    DbDialog d(&rule);
    ToggleCheck(d.tree(), d.item(L"Plastics", L"PEEK"));

    d.type("Woods", "Steels");
    d.button(DbDlg::kAddId)->click();
    ExpectMessage(0, ZebFormatText(Text(IDS_MATERIAL_NAME_IS_GROUP), {L"Steels"}),
                  ZebMsgIcon::Information);
    EXPECT_EQ(d.group(), L"");
    EXPECT_EQ(d.material(), L"");
    EXPECT_FALSE(d.button(DbDlg::kAddId)->isEnabled());

    d.type("Plastics", "c45");
    d.button(DbDlg::kAddId)->click();
    ExpectMessage(1, ZebFormatText(Text(IDS_DATABASE_ENTRY_EXISTS), {L"c45"}),
                  ZebMsgIcon::Information);
    EXPECT_EQ(HostMaterialsList(), before);
    EXPECT_TRUE(d.dlg.GetAddedPairs().empty());

    d.type("  steels\t", "16MnCr5 ");
    d.button(DbDlg::kAddId)->click();
    ExpectMessage(2, ZebFormatText(Text(IDS_MATERIAL_ADDED), {L"16MnCr5", L"Steels"}),
                  ZebMsgIcon::Information);
    EXPECT_NE(HostMaterialsList().find("Steels\t16MnCr5\n"), std::string::npos);
    EXPECT_EQ(d.dlg.GetAddedPairs(), (ZebMaterialPairList{{L"Steels", L"16MnCr5"}}));
    EXPECT_EQ(CheckedItems(d.tree()), (Names{d.tree().Root()->text(0).toStdWString(), L"Plastics",
                                             L"PEEK", L"Steels", L"16MnCr5"}));
    EXPECT_EQ(d.group(), L"");
    EXPECT_FALSE(d.button(DbDlg::kAddId)->isEnabled());

    // The service refuses an empty group name.
    d.type("", "Oak");
    d.dlg.OnAdd();
    ExpectMessage(3, Text(IDS_DATABASE_SAVE_FAILED), ZebMsgIcon::Error);
    EXPECT_EQ(d.dlg.GetAddedPairs().size(), 1u);
    EXPECT_EQ(ui.messages.size(), 4u);
}

TEST_F(MaterialDialogTest, DeleteAsksFirstAndReportsWhatHappened) {
    DbDialog d(&rule);
    // Nothing named: with the root highlighted the group is missing.
    d.button(DbDlg::kDeleteId)->click();
    ExpectMessage(0, Text(IDS_SELECT_GROUP_TO_DELETE), ZebMsgIcon::Warning);

    const std::wstring question =
        ZebFormatText(Text(IDS_CONFIRM_MATERIAL_DELETE), {Text(IDS_WORD_MATERIAL), L"PEEK"});
    ClickLabel(d.tree(), d.item(L"Plastics", L"PEEK"));
    ui.AnswerMessage(ZebIdNo);
    d.button(DbDlg::kDeleteId)->click();
    ExpectMessage(1, question, ZebMsgIcon::Question);
    EXPECT_EQ(ui.messages[1].buttons, ZebMsgButtons::YesNo);
    EXPECT_EQ(HostMaterialsList(), before);
    EXPECT_NE(d.item(L"Plastics", L"PEEK"), nullptr);
    EXPECT_EQ(d.group(), L"");

    ToggleCheck(d.tree(), d.item(L"Plastics", L"ABS"));
    ClickLabel(d.tree(), d.item(L"Plastics", L"PEEK"));
    ui.AnswerMessage(ZebIdYes);
    d.button(DbDlg::kDeleteId)->click();
    ExpectMessage(2, question, ZebMsgIcon::Question);
    ExpectMessage(3, ZebFormatText(Text(IDS_MATERIAL_DELETED), {Text(IDS_WORD_MATERIAL), L"PEEK"}),
                  ZebMsgIcon::Information);
    EXPECT_EQ(HostMaterialsList().find("Plastics\tPEEK"), std::string::npos);
    EXPECT_EQ(d.item(L"Plastics", L"PEEK"), nullptr);
    EXPECT_TRUE(Checked(d.item(L"Plastics", L"ABS"))) << "checks survive the rebuild";
    EXPECT_EQ(d.dlg.GetDeletedPairs(), (ZebMaterialPairList{{L"Plastics", L"PEEK"}}));

    // After the rebuild nothing is highlighted, so nothing names what to delete.
    ASSERT_EQ(d.tree().Highlighted(), nullptr);
    d.button(DbDlg::kDeleteId)->click();
    ExpectMessage(4, Text(IDS_SELECT_MATERIAL_TO_DELETE), ZebMsgIcon::Warning);

    // A material hardware is made of: warned about, then asked; letter case from the database.
    const std::string stored = HostMaterialsList();
    d.type("STEELS", "c45");
    ui.AnswerMessage(ZebIdOk);
    ui.AnswerMessage(ZebIdNo);
    d.button(DbDlg::kDeleteId)->click();
    ExpectMessage(5, Text(IDS_MATERIAL_IN_USE), ZebMsgIcon::Warning);
    ExpectMessage(
        6, ZebFormatText(Text(IDS_CONFIRM_MATERIAL_DELETE), {Text(IDS_WORD_MATERIAL), L"C45"}),
        ZebMsgIcon::Question);
    EXPECT_EQ(HostMaterialsList(), stored);

    // A material the group does not hold: the database refuses, nothing changes.
    d.type("Steels", "Unobtainium");
    ui.AnswerMessage(ZebIdYes);
    d.button(DbDlg::kDeleteId)->click();
    ExpectMessage(8, Text(IDS_DATABASE_DELETE_FAILED), ZebMsgIcon::Error);
    EXPECT_EQ(ui.messages.size(), 9u);
    EXPECT_EQ(HostMaterialsList(), stored);
    EXPECT_EQ(d.dlg.GetDeletedPairs().size(), 1u);

    // A whole group, each of its materials.
    ClickLabel(d.tree(), GroupItem(d.tree(), L"Plastics"));
    ui.AnswerMessage(ZebIdYes);
    d.button(DbDlg::kDeleteId)->click();
    ExpectMessage(
        9, ZebFormatText(Text(IDS_CONFIRM_MATERIAL_DELETE), {Text(IDS_WORD_GROUP), L"Plastics"}),
        ZebMsgIcon::Question);
    ExpectMessage(10,
                  ZebFormatText(Text(IDS_MATERIAL_DELETED), {Text(IDS_WORD_GROUP), L"Plastics"}),
                  ZebMsgIcon::Information);
    EXPECT_EQ(HostMaterialsList().find("Plastics"), std::string::npos);
    EXPECT_EQ(GroupItem(d.tree(), L"Plastics"), nullptr);
    EXPECT_EQ(d.dlg.GetDeletedPairs().size(), 1u + 5u);
}

// Cancel takes back every change of the dialog once the user agrees, and No keeps it open.
TEST_F(MaterialDialogTest, CancelUndoesTheDatabaseChangesOnYesOnly) {
    DbDialog d(&rule);
    d.type("Woods", "Oak");
    d.button(DbDlg::kAddId)->click();
    ClickLabel(d.tree(), d.item(L"Plastics", L"PEEK"));
    ui.AnswerMessage(ZebIdYes);
    d.button(DbDlg::kDeleteId)->click();
    const std::string changed = HostMaterialsList();
    ASSERT_NE(changed.find("Woods\tOak"), std::string::npos);
    ASSERT_EQ(changed.find("Plastics\tPEEK"), std::string::npos);

    const size_t shown = ui.messages.size();
    ui.AnswerMessage(ZebIdNo);
    d.button(DbDlg::kIdCancel)->click();
    ExpectMessage(shown, Text(IDS_CONFIRM_UNDO_MATERIAL_CHANGES), ZebMsgIcon::Question);
    EXPECT_TRUE(d.dlg.isVisible());
    EXPECT_EQ(HostMaterialsList(), changed);

    ui.AnswerMessage(ZebIdYes);
    d.button(DbDlg::kIdCancel)->click();
    EXPECT_FALSE(d.dlg.isVisible());
    EXPECT_EQ(d.dlg.result(), DbDlg::kIdCancel);
    EXPECT_EQ(HostMaterialsList(), before);
    EXPECT_TRUE(rule.MaterialSelection.empty());
}

// Cancel takes back additions and deletions in one transaction. When that fails the user is told,
// the dialog stays open with what it would take back, and a second Cancel can still do it.
TEST_F(MaterialDialogTest, CancelsUndoIsOneTransactionAndAFailureKeepsTheDialogOpen) {
    DbDialog d(&rule);
    d.type("Woods", "Oak");
    d.button(DbDlg::kAddId)->click();
    ClickLabel(d.tree(), d.item(L"Plastics", L"PEEK"));
    d.button(DbDlg::kDeleteId)->click();
    const std::string changed = HostMaterialsList();

    FailingDatabase db;
    db.failing = {"UndoMaterialChanges"};
    size_t shown = ui.messages.size();
    d.button(DbDlg::kIdCancel)->click();
    ExpectMessage(shown + 1, Text(IDS_DATABASE_UNDO_FAILED), ZebMsgIcon::Error);
    EXPECT_TRUE(d.dlg.isVisible());
    EXPECT_EQ(HostMaterialsList(), changed);
    EXPECT_EQ(db.calls, (std::vector<std::string>{"UndoMaterialChanges"}));

    db.failing.clear();
    db.calls.clear();
    d.button(DbDlg::kIdCancel)->click();
    EXPECT_FALSE(d.dlg.isVisible());
    EXPECT_EQ(HostMaterialsList(), before);
    EXPECT_EQ(db.calls, (std::vector<std::string>{"UndoMaterialChanges"}));
}

// Every read and write the editors make can fail; each failure is told, and nothing is taken for
// stored, checked or deleted that was not.
TEST_F(MaterialDialogTest, DatabaseFailuresAreToldAndChangeNothingUnseen) {
    FailingDatabase db;
    db.failing = {"GetGroupMaterials"};
    {
        DbDialog d(&rule);
        ExpectMessage(0, Text(IDS_DATABASE_READ_FAILED), ZebMsgIcon::Error);
        MaterialChoice target;
        CEditMaterialPairDlg pair(nullptr, &rule, target, {});
        QTimer::singleShot(0, &pair, [&] { pair.reject(); });
        pair.DoModal();
        ASSERT_EQ(ui.messages.size(), 2u);
        EXPECT_EQ(ui.messages[1].text, Text(IDS_DATABASE_READ_FAILED));
    }
    ui.messages.clear();
    db.failing = {"AddMaterial"};
    {
        DbDialog d(&rule);
        d.type("Woods", "Oak");
        d.button(DbDlg::kAddId)->click();
        ExpectMessage(0, Text(IDS_DATABASE_SAVE_FAILED), ZebMsgIcon::Error);
        EXPECT_TRUE(d.dlg.GetAddedPairs().empty());
        EXPECT_EQ(d.item(L"Woods", L"Oak"), nullptr);
    }
    ui.messages.clear();
    db.failing = {"GetMaterialGroups"};
    db.calls.clear();
    {
        // The tree cannot be built, and a name that cannot be checked is not added.
        DbDialog d(&rule);
        ExpectMessage(0, Text(IDS_DATABASE_READ_FAILED), ZebMsgIcon::Error);
        d.type("Woods", "Oak");
        d.button(DbDlg::kAddId)->click();
        ExpectMessage(1, Text(IDS_DATABASE_READ_FAILED), ZebMsgIcon::Error);
        EXPECT_EQ(std::count(db.calls.begin(), db.calls.end(), "AddMaterial"), 0);
    }
    EXPECT_EQ(HostMaterialsList(), before);
    for (const char* failing : {"GetMaterialPairs", "CheckMaterialUse", "DeleteMaterial"}) {
        SCOPED_TRACE(failing);
        ui.messages.clear();
        db.failing = {failing};
        DbDialog d(&rule);
        d.type("Plastics", "PEEK");
        d.button(DbDlg::kDeleteId)->click();
        const std::wstring expected =
            Text(std::string(failing) == "DeleteMaterial" ? IDS_DATABASE_DELETE_FAILED
                                                          : IDS_DATABASE_READ_FAILED);
        ASSERT_FALSE(ui.messages.empty());
        EXPECT_EQ(ui.messages.back().text, expected);
        EXPECT_NE(d.item(L"Plastics", L"PEEK"), nullptr);
        EXPECT_EQ(HostMaterialsList(), before);
    }
    ui.messages.clear();
    db.failing = {"GetGroupMaterials"};
    {
        // A group whose materials cannot be read is not deleted.
        db.failing.clear();
        DbDialog d(&rule);
        db.failing = {"GetGroupMaterials"};
        d.type("Plastics", "");
        d.button(DbDlg::kDeleteId)->click();
        ASSERT_FALSE(ui.messages.empty());
        EXPECT_EQ(ui.messages.back().text, Text(IDS_DATABASE_READ_FAILED));
        EXPECT_EQ(HostMaterialsList(), before);
    }
}

// A material added and deleted again in the same run leaves nothing to take back.
TEST_F(MaterialDialogTest, AddedThenDeletedLeavesNothingToUndo) {
    DbDialog d(&rule);
    d.type("Woods", "Oak");
    d.button(DbDlg::kAddId)->click();
    d.type("Woods", "Oak");
    ui.AnswerMessage(ZebIdYes);
    d.button(DbDlg::kDeleteId)->click();
    EXPECT_EQ(HostMaterialsList(), before);
    const size_t shown = ui.messages.size();
    d.button(DbDlg::kIdCancel)->click();
    EXPECT_EQ(ui.messages.size(), shown) << "no question";
    EXPECT_FALSE(d.dlg.isVisible());
    EXPECT_EQ(HostMaterialsList(), before);
}

TEST_F(MaterialDialogTest, OkStoresTheCheckedSelectionInTheRule) {
    rule.MaterialSelection = {{L"Steels", {L"C45"}}, {L"Woods", {L"Oak"}}};
    {
        DbDialog d(&rule);
        EXPECT_TRUE(Checked(GroupItem(d.tree(), L"Steels")));
        EXPECT_TRUE(Checked(d.item(L"Steels", L"C45")));
        EXPECT_FALSE(Checked(d.item(L"Steels", L"S235JR")));
        EXPECT_TRUE(Checked(d.tree().Root()));
        ToggleCheck(d.tree(), d.item(L"Plastics", L"PEEK"));
        d.button(DbDlg::kIdOk)->click();
        EXPECT_EQ(d.dlg.result(), DbDlg::kIdOk);
    }
    EXPECT_EQ(rule.MaterialSelection, (Selection{{L"Plastics", {L"PEEK"}}, {L"Steels", {L"C45"}}}));

    // A group the database no longer has checks nothing; OK then empties the selection.
    rule.MaterialSelection = {{L"Woods", {L"Oak", L"C45"}}};
    DbDialog d(&rule);
    EXPECT_TRUE(CheckedItems(d.tree()).empty());
    d.button(DbDlg::kIdOk)->click();
    EXPECT_TRUE(rule.MaterialSelection.empty());
    EXPECT_EQ(HostMaterialsList(), before);
}

// A group follows its materials: in the database editor when any is checked, in the pair editor
// only when all are.
TEST_F(MaterialDialogTest, ParentCheckRulesDifferBetweenTheDialogs) {
    DbDialog d(&rule);
    QTreeWidgetItem* brass = GroupItem(d.tree(), L"Brass");
    ASSERT_EQ(Children(brass), (Names{L"CuZn37", L"CuZn39Pb3"}));
    ToggleCheck(d.tree(), d.item(L"Brass", L"CuZn37"));
    EXPECT_TRUE(Checked(brass));
    EXPECT_TRUE(Checked(d.tree().Root()));
    EXPECT_EQ(d.tree().Highlighted(), d.item(L"Brass", L"CuZn37"));
    ToggleCheck(d.tree(), d.item(L"Brass", L"CuZn37"));
    EXPECT_FALSE(Checked(brass));
    EXPECT_FALSE(Checked(d.tree().Root()));
    ToggleCheck(d.tree(), brass);
    EXPECT_EQ(CheckedItems(d.tree()),
              (Names{d.tree().Root()->text(0).toStdWString(), L"Brass", L"CuZn37", L"CuZn39Pb3"}));

    MaterialChoice target;
    CEditMaterialPairDlg pair(nullptr, &rule, target, {});
    ShowActive(&pair);
    CZebMaterialTree& tree = pair.GetTree();
    EXPECT_EQ(tree.Widget(), pair.GetDlgItem(CEditMaterialPairDlg::kTreeId));
    brass = GroupItem(tree, L"Brass");
    ToggleCheck(tree, tree.FindMaterial(L"Brass", L"CuZn37"));
    EXPECT_FALSE(Checked(brass));
    ToggleCheck(tree, tree.FindMaterial(L"Brass", L"CuZn39Pb3"));
    EXPECT_TRUE(Checked(brass));
    EXPECT_FALSE(Checked(tree.Root()));
    ToggleCheck(tree, tree.FindMaterial(L"Brass", L"CuZn37"));
    EXPECT_FALSE(Checked(brass));
    EXPECT_TRUE(Checked(tree.FindMaterial(L"Brass", L"CuZn39Pb3")));
    // Checking the root checks everything, unchecking a group unchecks it and the root.
    ToggleCheck(tree, tree.Root());
    EXPECT_EQ(CheckedItems(tree).size(), static_cast<size_t>(ItemCount(tree.Root())));
    ToggleCheck(tree, GroupItem(tree, L"Steels"));
    EXPECT_FALSE(Checked(tree.FindMaterial(L"Steels", L"C45")));
    EXPECT_FALSE(Checked(tree.Root()));
    EXPECT_TRUE(Checked(brass));
}

TEST_F(MaterialDialogTest, PairEditorPreChecksNamesAndFillsTheTargetOnOkOnly) {
    MaterialChoice target{{L"Old", {L"choice"}}};
    CEditMaterialPairDlg pair(nullptr, &rule, target,
                              {L"peek", L"Brass", L"No such material", L""});
    EXPECT_EQ(pair.windowTitle().toStdWString(), Text(IDS_MATERIAL_PAIR_TITLE));
    EXPECT_EQ(pair.GetRule(), &rule);
    CZebMaterialTree& tree = pair.GetTree();
    EXPECT_TRUE(tree.Root()->isExpanded());
    EXPECT_EQ(CheckedItems(tree), (Names{L"Brass", L"CuZn37", L"CuZn39Pb3", L"PEEK"}));
    EXPECT_FALSE(Checked(GroupItem(tree, L"Plastics")));
    EXPECT_TRUE(GroupItem(tree, L"Plastics")->isExpanded()) << "a chosen material is in view";
    EXPECT_FALSE(GroupItem(tree, L"Steels")->isExpanded());

    // Cancel leaves the caller's map.
    QTimer::singleShot(0, &pair, [&] {
        qobject_cast<QPushButton*>(pair.GetDlgItem(CEditMaterialPairDlg::kIdCancel))->click();
    });
    EXPECT_EQ(pair.DoModal(), CEditMaterialPairDlg::kIdCancel);
    EXPECT_EQ(target, (MaterialChoice{{L"Old", {L"choice"}}}));

    QTimer::singleShot(0, &pair, [&] {
        qobject_cast<QPushButton*>(pair.GetDlgItem(CEditMaterialPairDlg::kIdOk))->click();
    });
    EXPECT_EQ(pair.DoModal(), CEditMaterialPairDlg::kIdOk);
    EXPECT_EQ(target,
              (MaterialChoice{{L"Brass", {L"CuZn37", L"CuZn39Pb3"}}, {L"Plastics", {L"PEEK"}}}));
    EXPECT_EQ(HostMaterialsList(), before);
    EXPECT_TRUE(ui.messages.empty());
}

// Both editors open with the size they were closed with; Tab walks the material editor's rows
// from the left, then the tree and the buttons.
TEST_F(MaterialDialogTest, EditorsKeepTheirSizeAndTabFollowsTheLayout) {
    QSize chosen;
    {
        DbDialog d(&rule);
        chosen = d.dlg.size() + QSize(150, 70);
        d.dlg.resize(chosen);
        d.dlg.reject();
    }
    DbDialog again(&rule);
    EXPECT_EQ(again.dlg.size(), chosen);
    again.type("Steel", "S235");
    const std::vector<QWidget*> walked = WalkWithTab(again.field(DbDlg::kGroupFieldId));
    const std::vector<int> ids = ControlIdsOf(walked);
    ASSERT_EQ(ids.size(), 8u);
    EXPECT_EQ(std::vector<int>(ids.begin(), ids.begin() + 5),
              (std::vector<int>{DbDlg::kGroupFieldId, DbDlg::kAddId, DbDlg::kMaterialFieldId,
                                DbDlg::kDeleteId, DbDlg::kTreeId}));
    EXPECT_EQ(std::set<int>(ids.begin() + 5, ids.end()),
              (std::set<int>{DbDlg::kIdOk, DbDlg::kIdCancel, DbDlg::kIdHelp}));
    ExpectReadingOrder(&again.dlg, walked);
    again.dlg.reject();

    MaterialChoice target;
    QSize pairSize;
    {
        CEditMaterialPairDlg pair(nullptr, &rule, target, {});
        ShowActive(&pair);
        pairSize = pair.size() + QSize(90, 40);
        pair.resize(pairSize);
        pair.reject();
    }
    CEditMaterialPairDlg pair(nullptr, &rule, target, {});
    ShowActive(&pair);
    EXPECT_EQ(pair.size(), pairSize);
    const std::vector<int> pairIds =
        ControlIdsOf(WalkWithTab(pair.GetDlgItem(CEditMaterialPairDlg::kTreeId)));
    ASSERT_EQ(pairIds.size(), 3u);
    EXPECT_EQ(pairIds[0], CEditMaterialPairDlg::kTreeId);
    pair.reject();
}

TEST(MaterialListText, SplitsUpToTheFirstEmptyNameAndTrimsBlanksAndTabs) {
    EXPECT_EQ(SplitMaterialList(L"A;B;C"), (Names{L"A", L"B", L"C"}));
    EXPECT_EQ(SplitMaterialList(L"A;B;"), (Names{L"A", L"B"}));
    EXPECT_EQ(SplitMaterialList(L"A;;B"), (Names{L"A"}));
    EXPECT_EQ(SplitMaterialList(L";A"), Names{});
    EXPECT_EQ(TrimBlanksAndTabs(L" \tSteel grade\t "), L"Steel grade");
    EXPECT_EQ(TrimBlanksAndTabs(L"\nx\n"), L"\nx\n");
    EXPECT_EQ(TrimBlanksAndTabs(L" \t"), L"");
}

#include <dlfcn.h>
#include <gtest/gtest.h>

#include <QApplication>
#include <QComboBox>
#include <QDialog>
#include <QDoubleSpinBox>
#include <QLineEdit>
#include <QPushButton>
#include <QTableWidget>
#include <QTest>
#include <QTimer>
#include <algorithm>
#include <functional>
#include <list>
#include <vector>

#include "framework/ui_message.h"
#include "platform/hardware_db_bridge.h"
#include "tests/database/db_test_support.h"
#include "tests/support/scratch_config.h"

namespace {

QApplication& App() {
    static int argc = 1;
    static char name[] = "platform_tests";
    static char* argv[] = {name, nullptr};
    UseScratchConfiguration();
    // Never destroyed: a QApplication torn down among the exit-time destructors crashes.
    static QApplication* app = new QApplication(argc, argv);
    return *app;
}

// Answers every message with Yes and keeps its text.
class RecordingSink : public IZebMessageSink {
public:
    RecordingSink() { previous_ = SetZebMessageSink(this); }
    ~RecordingSink() override { SetZebMessageSink(previous_); }
    int ShowMessage(const std::wstring&, const std::wstring& text, ZebMsgIcon icon,
                    ZebMsgButtons buttons) override {
        messages.push_back({text, icon});
        return buttons == ZebMsgButtons::YesNo ? ZebIdYes : ZebIdOk;
    }
    std::vector<std::pair<std::wstring, ZebMsgIcon>> messages;

private:
    IZebMessageSink* previous_;
};

// Runs `script` on the modal dialog once it shows, then lets `launch` return. A dialog the script
// left open is closed after a while so that a fault cannot hang the suite.
void WithModalDialog(const std::function<void(QDialog&)>& script,
                     const std::function<void()>& launch) {
    App();
    bool ran = false;
    QTimer::singleShot(0, [&] {
        auto* dialog = qobject_cast<QDialog*>(QApplication::activeModalWidget());
        ASSERT_NE(dialog, nullptr);
        ran = true;
        script(*dialog);
        if (dialog->isVisible()) dialog->findChild<QPushButton*>("closeButton")->click();
    });
    QTimer guard;
    guard.setSingleShot(true);
    QObject::connect(&guard, &QTimer::timeout, [] {
        if (QWidget* open = QApplication::activeModalWidget()) open->close();
    });
    guard.start(20000);
    launch();
    EXPECT_TRUE(ran);
}

template <class T>
T* Child(QDialog& dialog, const char* name) {
    T* child = dialog.findChild<T*>(name);
    EXPECT_NE(child, nullptr) << name;
    return child;
}

int RowOf(QDialog& dialog, const QString& designation) {
    auto* table = Child<QTableWidget>(dialog, "hardwareTable");
    for (int row = 0; row < table->rowCount(); ++row)
        if (table->item(row, 0)->text() == designation) return row;
    return -1;
}

std::list<ZebHardwareRecord> Hardware() {
    std::list<ZebHardwareRecord> records;
    IDatabaseCollector* db = zeb_db::ZEBDataHelper::getInstance();
    if (db) {
        EXPECT_EQ(db->GetHardwareList(records), ZebDbOk);
    }
    return records;
}

const ZebHardwareRecord* Find(const std::list<ZebHardwareRecord>& records,
                              const std::wstring& designation) {
    const auto found =
        std::find_if(records.begin(), records.end(),
                     [&](const ZebHardwareRecord& r) { return r.designation == designation; });
    return found == records.end() ? nullptr : &*found;
}

}  // namespace

TEST(HardwareDialog, RecordAddedInTheDialogIsInTheDatabaseWhenItCloses) {
    ScopedDatabaseFolder folder;
    RecordingSink sink;
    const size_t before = Hardware().size();
    WithModalDialog(
        [](QDialog& dialog) {
            auto* table = Child<QTableWidget>(dialog, "hardwareTable");
            const int rows = table->rowCount();
            EXPECT_GT(rows, 0);
            Child<QLineEdit>(dialog, "designationEdit")->setText("  Shoulder screw M8x30 ");
            Child<QLineEdit>(dialog, "kindEdit")->setText("Shoulder screw");
            Child<QLineEdit>(dialog, "standardEdit")->setText("ISO 7379");
            Child<QComboBox>(dialog, "threadCombo")->setCurrentText("M8x1.25");
            Child<QDoubleSpinBox>(dialog, "lengthSpin")->setValue(30);
            Child<QComboBox>(dialog, "materialCombo")->setCurrentText("42CrMo4");
            QTest::mouseClick(Child<QPushButton>(dialog, "addButton"), Qt::LeftButton);
            EXPECT_EQ(table->rowCount(), rows + 1);
            EXPECT_GE(RowOf(dialog, "Shoulder screw M8x30"), 0);
        },
        [] { LaunchHardwareDBDialog(nullptr); });
    EXPECT_TRUE(sink.messages.empty());
    const std::list<ZebHardwareRecord> after = Hardware();
    EXPECT_EQ(after.size(), before + 1);
    const ZebHardwareRecord* added = Find(after, L"Shoulder screw M8x30");
    ASSERT_NE(added, nullptr);
    EXPECT_EQ(added->kind, L"Shoulder screw");
    EXPECT_EQ(added->standard, L"ISO 7379");
    EXPECT_EQ(added->thread, L"M8x1.25");
    EXPECT_EQ(added->length, 30.0);
    EXPECT_EQ(added->material, L"42CrMo4");
}

TEST(HardwareDialog, EditDeleteAndRefusedDuplicate) {
    ScopedDatabaseFolder folder;
    RecordingSink sink;
    const size_t before = Hardware().size();
    WithModalDialog(
        [&](QDialog& dialog) {
            auto* table = Child<QTableWidget>(dialog, "hardwareTable");
            auto* designation = Child<QLineEdit>(dialog, "designationEdit");
            // selecting a row shows the record in the fields
            table->selectRow(RowOf(dialog, "ISO 4017 M8x20"));
            EXPECT_EQ(designation->text(), "ISO 4017 M8x20");
            EXPECT_EQ(Child<QComboBox>(dialog, "threadCombo")->currentText(), "M8x1.25");
            designation->setText("ISO 4017 M8x25");
            Child<QDoubleSpinBox>(dialog, "lengthSpin")->setValue(25);
            Child<QPushButton>(dialog, "saveButton")->click();
            EXPECT_TRUE(sink.messages.empty());

            // a designation that exists in another case is refused with a message
            designation->setText("iso 4762 m8x25");
            Child<QPushButton>(dialog, "addButton")->click();
            ASSERT_EQ(sink.messages.size(), 1u);
            EXPECT_NE(sink.messages[0].first.find(L"iso 4762 m8x25"), std::wstring::npos);

            table->selectRow(RowOf(dialog, "ISO 4032 M6 brass"));
            Child<QPushButton>(dialog, "deleteButton")->click();  // the sink answers Yes
            EXPECT_EQ(RowOf(dialog, "ISO 4032 M6 brass"), -1);
        },
        [] { LaunchHardwareDBDialog(nullptr); });
    const std::list<ZebHardwareRecord> after = Hardware();
    EXPECT_EQ(after.size(), before - 1);
    EXPECT_EQ(Find(after, L"ISO 4017 M8x20"), nullptr);
    ASSERT_NE(Find(after, L"ISO 4017 M8x25"), nullptr);
    EXPECT_EQ(Find(after, L"ISO 4017 M8x25")->length, 25.0);
    EXPECT_EQ(Find(after, L"ISO 4032 M6 brass"), nullptr);
    EXPECT_EQ(std::count_if(
                  after.begin(), after.end(),
                  [](const ZebHardwareRecord& r) { return r.designation == L"ISO 4762 M8x25"; }),
              1);
    // the refusal and the question were the only messages
    ASSERT_EQ(sink.messages.size(), 2u);
    EXPECT_EQ(sink.messages[1].second, ZebMsgIcon::Question);
}

TEST(HardwareDialog, WithoutADatabaseAMessageInsteadOfTheDialog) {
    ScopedDatabaseFolder folder;
    std::ofstream(folder.Folder() / "plain") << "x";
    ScopedDatabaseFolder::Point(folder.Folder() / "plain" / "below");
    App();
    RecordingSink sink;
    LaunchHardwareDBDialog(nullptr);  // returns at once: nothing modal to close
    ASSERT_EQ(sink.messages.size(), 1u);
    EXPECT_EQ(sink.messages[0].second, ZebMsgIcon::Error);
    EXPECT_NE(sink.messages[0].first.find(L"VANTOR_DATABASE_DIR"), std::wstring::npos);
}

TEST(HardwareDialog, ModuleEntryOpensTheDialogOverItsParent) {
    ScopedDatabaseFolder folder;
    App();
    void* module = ::dlopen(VANTOR_BUILD_DIR "/lib/vantor/ZEBAssemblyRules.so", RTLD_NOW);
    ASSERT_NE(module, nullptr) << ::dlerror();
    using Launch = void (*)(QWidget*);
    auto launch = reinterpret_cast<Launch>(::dlsym(module, "LaunchFastenerDatabaseDlg"));
    ASSERT_NE(launch, nullptr);
    QWidget parent;
    WithModalDialog([&](QDialog& dialog) { EXPECT_EQ(dialog.parentWidget(), &parent); },
                    [&] { launch(&parent); });
    ::dlclose(module);
}

TEST(DatabaseModule, NameComesFromTheDatabaseElseThePresetStays) {
    ScopedDatabaseFolder folder;
    void* module = ::dlopen(VANTOR_BUILD_DIR "/lib/vantor/ZEBDatabaseu.so", RTLD_NOW);
    ASSERT_NE(module, nullptr) << ::dlerror();
    using GetName = void (*)(std::wstring&);
    auto getName = reinterpret_cast<GetName>(::dlsym(module, "GetModuleName"));
    ASSERT_NE(getName, nullptr);
    std::wstring name = L"Module Name";
    getName(name);
    EXPECT_EQ(name, L"Vantor Database");

    std::ofstream(folder.Folder() / "plain") << "x";
    ScopedDatabaseFolder::Point(folder.Folder() / "plain" / "below");
    name = L"Module Name";
    getName(name);
    EXPECT_EQ(name, L"Module Name");
    ::dlclose(module);
}

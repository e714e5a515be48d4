#include <gtest/gtest.h>

#include <QApplication>
#include <QFile>
#include <QFileDialog>
#include <QMessageBox>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTimer>

#include "framework/ui/recording_ui_service.h"
#include "tests/ui/qt_test_app.h"

TEST(UiService, WrittenFiltersBecomeNameFiltersWithTheirPatterns) {
    EXPECT_EQ(ZebNameFiltersFromFilter(L"XLS Files (*.xls;*.xlsx)|*.xls; *.xlsx|"),
              QStringList{"XLS Files (*.xls;*.xlsx) (*.xls *.xlsx)"});
    EXPECT_EQ(ZebNameFiltersFromFilter(L"(*.prt.*;*.prt)|*.prt.*;*.prt"),
              QStringList{"(*.prt.*;*.prt) (*.prt.* *.prt)"});
    EXPECT_EQ(ZebNameFiltersFromFilter(L"(*.prt)|*.prt||"), QStringList{"(*.prt) (*.prt)"});
    EXPECT_EQ(ZebNameFiltersFromFilter(L"Text|*.txt|All|*.*||"),
              (QStringList{"Text (*.txt)", "All (*.*)"}));
    EXPECT_TRUE(ZebNameFiltersFromFilter(L"").isEmpty());
}

TEST(UiService, CoreMessagesGoToTheInstalledServiceAndBack) {
    EnsureQtTestApp();
    IZebUiService* qtService = GetZebUiService();
    ASSERT_NE(qtService, nullptr);
    {
        CZebRecordingUiService ui;
        EXPECT_EQ(GetZebUiService(), &ui);
        ui.AnswerMessage(ZebIdNo);
        EXPECT_EQ(
            ZebMessageBox(L"Replace it?", L"Vantor", ZebMsgIcon::Question, ZebMsgButtons::YesNo),
            ZebIdNo);
        // Unscripted: the first button.
        EXPECT_EQ(ZebUiMessage(nullptr, L"Refused", ZebMsgIcon::Warning, ZebMsgButtons::OkCancel),
                  ZebIdOk);
        ASSERT_EQ(ui.messages.size(), 2u);
        EXPECT_EQ(ui.messages[0].caption, L"Vantor");
        EXPECT_EQ(ui.messages[0].text, L"Replace it?");
        EXPECT_EQ(ui.messages[0].icon, ZebMsgIcon::Question);
        EXPECT_EQ(ui.messages[1].buttons, ZebMsgButtons::OkCancel);
        EXPECT_EQ(ui.messages[1].icon, ZebMsgIcon::Warning);

        std::vector<std::wstring> paths;
        ZebOpenFileRequest request;
        request.filter = L"(*.prt)|*.prt||";
        ui.ChooseFiles({L"/a/b.prt", L"/a/c.prt"});
        EXPECT_TRUE(ui.OpenFiles(nullptr, request, paths));
        EXPECT_EQ(paths, (std::vector<std::wstring>{L"/a/b.prt", L"/a/c.prt"}));
        ui.CancelChooser();
        EXPECT_FALSE(ui.OpenFiles(nullptr, request, paths));
        EXPECT_FALSE(ui.OpenFiles(nullptr, request, paths));
        EXPECT_EQ(ui.choosers.size(), 3u);
    }
    EXPECT_EQ(GetZebUiService(), qtService);
}

namespace {
// Runs `answer` on the modal window as soon as it opens.
template <class Window, class F>
void AnswerModal(F answer) {
    QTimer::singleShot(0, [answer] {
        auto* window = qobject_cast<Window*>(QApplication::activeModalWidget());
        ASSERT_NE(window, nullptr);
        answer(window);
    });
}
}  // namespace

TEST(UiService, QtImplementationShowsRealMessageBoxesAndChoosers) {
    EnsureQtTestApp();
    CZebQtUiService qt;
    AnswerModal<QMessageBox>([](QMessageBox* box) {
        EXPECT_EQ(box->windowTitle(), "Vantor");
        EXPECT_EQ(box->text(), "Overwrite?");
        EXPECT_EQ(box->icon(), QMessageBox::Question);
        EXPECT_NE(box->button(QMessageBox::Yes), nullptr);
        box->button(QMessageBox::No)->click();
    });
    EXPECT_EQ(qt.MessageBox(nullptr, L"Vantor", L"Overwrite?", ZebMsgIcon::Question,
                            ZebMsgButtons::YesNo),
              ZebIdNo);
    AnswerModal<QMessageBox>([](QMessageBox* box) {
        EXPECT_EQ(box->icon(), QMessageBox::Critical);
        box->button(QMessageBox::Cancel)->click();
    });
    EXPECT_EQ(
        qt.MessageBox(nullptr, L"Vantor", L"Failed", ZebMsgIcon::Error, ZebMsgButtons::OkCancel),
        ZebIdCancel);

    QTemporaryDir folder;
    const QString first = folder.filePath("bolt.prt"), second = folder.filePath("nut.prt");
    for (const QString& path : {first, second}) {
        QFile file(path);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    }
    AnswerModal<QFileDialog>([&](QFileDialog* dialog) {
        EXPECT_EQ(dialog->nameFilters(), QStringList{"(*.prt.*;*.prt) (*.prt.* *.prt)"});
        EXPECT_EQ(dialog->fileMode(), QFileDialog::ExistingFiles);
        dialog->setDirectory(folder.path());
        dialog->selectFile("\"bolt.prt\" \"nut.prt\"");
        static_cast<QDialog*>(dialog)->accept();
    });
    ZebOpenFileRequest request;
    request.filter = L"(*.prt.*;*.prt)|*.prt.*;*.prt";
    request.multiSelect = true;
    std::vector<std::wstring> paths;
    ASSERT_TRUE(qt.OpenFiles(nullptr, request, paths));
    EXPECT_EQ(paths, (std::vector<std::wstring>{first.toStdWString(), second.toStdWString()}));

    AnswerModal<QFileDialog>([](QFileDialog* dialog) { dialog->reject(); });
    request.multiSelect = false;
    EXPECT_FALSE(qt.OpenFiles(nullptr, request, paths));
}

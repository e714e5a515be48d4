#include <gtest/gtest.h>

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
        EXPECT_EQ(ZebMessageBox(L"Replace it?", L"Vantor", ZebMsgIcon::Question, ZebMsgButtons::YesNo),
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

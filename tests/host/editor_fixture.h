#pragma once

#include <gtest/gtest.h>

#include <QAction>
#include <QApplication>
#include <QMenu>
#include <QMenuBar>

#include "framework/ui/recording_ui_service.h"
#include "host/editor/rule_set_editor.h"
#include "host/module_loader.h"
#include "tests/database/db_test_support.h"
#include "tests/support/scoped_env.h"

// What every editor test starts from: the offscreen application, the built module loaded as the
// host loads it, an English user with a database folder and a configuration of the test's own
// (recent files and window sizes go there, where the editor keeps them for a user), and messages
// and file choosers answered by the recording UI service.
class EditorFixture : public ::testing::Test {
protected:
    void SetUp() override {
        static int argc = 1;
        static char name[] = "editor_tests";
        static char* argv[] = {name, nullptr};
        if (!QApplication::instance()) new QApplication(argc, argv);
        std::string error;
        ASSERT_TRUE(module.Load(VANTOR_BUILD_DIR "/lib/vantor", error)) << error;
    }

    // The action of the editor's menus (at any depth) whose text, without its '&', is `text`.
    static QAction* MenuAction(CRuleSetEditor& editor, const QString& text) {
        for (QMenu* menu : editor.menuBar()->findChildren<QMenu*>())
            for (QAction* action : menu->actions())
                if (action->text().remove('&') == text) return action;
        return nullptr;
    }

    ScopedEnv platform{"QT_QPA_PLATFORM", "offscreen"};
    ScopedEnv resources{"VANTOR_RES_DIR", VANTOR_BUILD_DIR "/share/vantor/res"};
    ScopedEnv language{"LANG", "en_US.UTF-8"};
    ScopedDatabaseFolder folder;
    ScopedEnv config{"XDG_CONFIG_HOME", (folder.Folder() / "config").c_str()};
    CZebRecordingUiService ui;
    ModuleLoader module;
};

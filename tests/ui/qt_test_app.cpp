#include "tests/ui/qt_test_app.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QStandardPaths>
#include <QTest>
#include <cstdlib>

#include "tests/support/module_environment.h"

void EnsureQtTestApp() {
    static int argc = 1;
    static char name[] = "ui_tests";
    static char* argv[] = {name, nullptr};
    // One module for the whole run: widgets of every test load their texts and images from it.
    static ScopedModule module;
    if (!QApplication::instance()) {
        setenv("QT_QPA_PLATFORM", "offscreen", 0);
        // Settings the dialogs keep (their sizes) go to a test folder, not the user's.
        QStandardPaths::setTestModeEnabled(true);
        new QApplication(argc, argv);
    }
}

void ShowActive(QWidget* window) {
    window->show();
    window->activateWindow();
    QApplication::setActiveWindow(window);
    (void)QTest::qWaitForWindowActive(window);
}

void Type(QLineEdit* field, const char* text) {
    field->clear();
    QTest::keyClicks(field, text);
}

namespace {
// Fixtures hold widgets as members, so the application must exist before any test is built.
class QtTestEnvironment : public ::testing::Environment {
public:
    void SetUp() override { EnsureQtTestApp(); }
};
[[maybe_unused]] ::testing::Environment* const g_environment =
    ::testing::AddGlobalTestEnvironment(new QtTestEnvironment);
}  // namespace

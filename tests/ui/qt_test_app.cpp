#include "tests/ui/qt_test_app.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QTest>
#include <cstdlib>

#include "app/assembly_rules_app.h"

void EnsureQtTestApp() {
    static int argc = 1;
    static char name[] = "ui_tests";
    static char* argv[] = {name, nullptr};
    if (!QApplication::instance()) {
        setenv("QT_QPA_PLATFORM", "offscreen", 0);
        setenv("VANTOR_RES_DIR", VANTOR_BUILD_DIR "/share/vantor/res", 1);
        setenv("LANG", "en_US.UTF-8", 1);
        new QApplication(argc, argv);
    }
    if (!GetAssemblyRulesApp()) StartAssemblyRulesApp();
}

void ShowActive(QWidget* window) {
    window->show();
    window->activateWindow();
    QApplication::setActiveWindow(window);
    (void)QTest::qWaitForWindowActive(window);
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

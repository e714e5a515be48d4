#include "tests/ui/qt_test_app.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QTest>
#include <cstdlib>

#include "framework/ui/control_id.h"
#include "tests/support/module_environment.h"
#include "tests/support/scratch_config.h"

void EnsureQtTestApp() {
    static int argc = 1;
    static char name[] = "ui_tests";
    static char* argv[] = {name, nullptr};
    // One module for the whole run: widgets of every test load their texts and images from it.
    static ScopedModule module;
    if (!QApplication::instance()) {
        setenv("QT_QPA_PLATFORM", "offscreen", 0);
        // Settings the dialogs keep (their sizes) go to a folder of this run, not the user's.
        UseScratchConfiguration();
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

std::vector<QWidget*> WalkWithTab(QWidget* first) {
    std::vector<QWidget*> walked;
    first->setFocus();
    for (QWidget* focus = first; focus && walked.size() < 60;) {
        walked.push_back(focus);
        QTest::keyClick(focus, Qt::Key_Tab);
        focus = QApplication::focusWidget();
        if (focus == first) break;
    }
    return walked;
}

std::vector<int> ControlIdsOf(const std::vector<QWidget*>& controls) {
    std::vector<int> ids;
    for (QWidget* control : controls) ids.push_back(GetZebControlId(control));
    return ids;
}

void ExpectReadingOrder(QWidget* dialog, const std::vector<QWidget*>& controls) {
    for (size_t i = 1; i < controls.size(); ++i) {
        const QPoint before =
            controls[i - 1]->mapTo(dialog, QPoint(0, controls[i - 1]->height() / 2));
        const QPoint here = controls[i]->mapTo(dialog, QPoint(0, controls[i]->height() / 2));
        EXPECT_TRUE(here.y() > before.y() + 4 ||
                    (std::abs(here.y() - before.y()) <= 12 && here.x() > before.x()))
            << i << ": (" << before.x() << "," << before.y() << ") then (" << here.x() << ","
            << here.y() << ")";
    }
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

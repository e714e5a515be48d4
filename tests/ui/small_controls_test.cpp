#include <gtest/gtest.h>

#include <QTest>

#include "controls/double_edit_ex.h"
#include "controls/wrapper_combo_ctrl.h"
#include "tests/ui/qt_test_app.h"

namespace {
QString Typed(const char* keys, bool allowNegative = false) {
    CDoubleEditEx box;
    box.SetAllowNegative(allowNegative);
    QTest::keyClicks(&box, keys);
    return box.text();
}

// The whole text arrives in one change, as when pasted.
QString Pasted(const char* text, bool allowNegative = false) {
    CDoubleEditEx box;
    box.SetAllowNegative(allowNegative);
    box.insert(text);
    return box.text();
}
}  // namespace

TEST(NumberBox, KeepsOnlyDigitsAndPointsAsTyped) {
    EnsureQtTestApp();
    EXPECT_EQ(Typed("12a"), "12");
    EXPECT_EQ(Typed("x"), "");
    EXPECT_EQ(Pasted("-5"), "");
    EXPECT_EQ(Pasted("-5", true), "-5");
    EXPECT_EQ(Pasted("12a"), "");  // nothing accepted before
    // Typed key by key, the minus is refused on its own and the digit then stands alone.
    EXPECT_EQ(Typed("-5"), "5");
    EXPECT_EQ(Typed("1.2.3"), "1.2.3");
    EXPECT_EQ(Typed("0.25"), "0.25");

    CDoubleEditEx box;
    EXPECT_FALSE(box.IsChanged());
    QTest::keyClicks(&box, "7.5");
    EXPECT_TRUE(box.IsChanged());
    EXPECT_EQ(box.GetLastAcceptedText(), L"7.5");
    box.setCursorPosition(1);
    QTest::keyClicks(&box, "q");
    EXPECT_EQ(box.text(), "7.5");
    EXPECT_EQ(box.cursorPosition(), 3);
    // A whole text set at once is checked the same way.
    box.setText("3mm");
    EXPECT_EQ(box.text(), "7.5");
}

TEST(NumberBox, TakesEitherDecimalSeparatorAndReadsWhatItShows) {
    EnsureQtTestApp();
    // "0,5" used to lose its comma and become "05".
    EXPECT_EQ(Typed("0,5"), "0,5");
    CDoubleEditEx box;
    QTest::keyClicks(&box, "0,5");
    EXPECT_EQ(box.Read().value, 0.5);
    EXPECT_TRUE(box.Read().Ok());
    box.setText("1,500");  // may group thousands where '.' is the separator
    EXPECT_EQ(box.Read().fault, NumberTextFault::Ambiguous);
    box.setText("1.2.3");
    EXPECT_EQ(box.Read().fault, NumberTextFault::NotNumber);
    box.SetAllowNegative(true);
    box.setText("-2,5");
    EXPECT_EQ(box.Read().value, -2.5);
}

TEST(WrapperCombo, FillCollectAndAddIfAbsent) {
    EnsureQtTestApp();
    CWrapperComboCtrl combo;
    combo.addItem("old");
    combo.FillFromList({L"Low", L"", L"High"});
    EXPECT_EQ(combo.count(), 3);
    EXPECT_EQ(combo.itemText(0), "Low");
    std::vector<std::wstring> items{L"kept"};
    combo.CollectItems(items);
    EXPECT_EQ(items, (std::vector<std::wstring>{L"kept", L"Low", L"High"}));
    combo.AddIfAbsent(L"HIGH");
    EXPECT_EQ(combo.count(), 3);
    combo.AddIfAbsent(L"Hi");
    EXPECT_EQ(combo.count(), 4);
    EXPECT_EQ(combo.itemText(3), "Hi");
}

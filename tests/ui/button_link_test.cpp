#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <QUrl>
#include <QVBoxLayout>

#include "app/assembly_rules_app.h"
#include "controls/hyper_link.h"
#include "controls/zeb_button.h"
#include "framework/ui/control_id.h"
#include "framework/ui/picture_control.h"
#include "framework/ui/recording_ui_service.h"
#include "framework/ui/ui_service.h"
#include "tests/ui/qt_test_app.h"

namespace {
constexpr unsigned kAddBitmap = 6014;
const QRgb kTransparent = qRgb(100, 100, 100);

// First pixel of the image with and first pixel without the transparent colour.
void FindPixels(const QImage& image, QPoint& transparent, QPoint& opaque) {
    transparent = opaque = QPoint(-1, -1);
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x) {
            QPoint& slot =
                (image.pixel(x, y) & 0xFFFFFF) == (kTransparent & 0xFFFFFF) ? transparent : opaque;
            if (slot.x() < 0) slot = QPoint(x, y);
        }
}
}  // namespace

TEST(ZebButton, TransparentColourShowsTheBackground) {
    EnsureQtTestApp();
    CZebResourceScope scope;
    const QImage source = ZebLoadBitmap(kAddBitmap).toImage();
    ASSERT_FALSE(source.isNull());
    QPoint transparent, opaque;
    FindPixels(source, transparent, opaque);
    ASSERT_GE(transparent.x(), 0);
    ASSERT_GE(opaque.x(), 0);

    CZEBButton button;
    button.resize(source.width() + 20, source.height() + 20);
    EXPECT_EQ(button.SetBitmaps(kAddBitmap, 0x646464), CZEBButton::kBitmapOk);
    ASSERT_TRUE(button.HasBitmap());
    const QImage shot = button.grab().toImage();
    const QPoint origin = button.BitmapRect().topLeft();
    const QColor face = QApplication::palette().color(QPalette::Button);
    EXPECT_EQ(QColor(shot.pixel(origin + transparent)), face);
    EXPECT_EQ(shot.pixel(origin + opaque) & 0xFFFFFF, source.pixel(opaque) & 0xFFFFFF);
    // Outside the image the face colour shows too (no border while not hovered).
    EXPECT_EQ(QColor(shot.pixel(1, 1)), face);

    // Disabled, the symbol is drawn greyed, still over the face colour.
    button.setEnabled(false);
    const QImage greyed = button.grab().toImage();
    const QColor symbol(greyed.pixel(origin + opaque));
    EXPECT_NE(symbol.rgb() & 0xFFFFFF, source.pixel(opaque) & 0xFFFFFF);
    EXPECT_LE(std::abs(symbol.red() - symbol.green()), 8);
    EXPECT_EQ(QColor(greyed.pixel(origin + transparent)), face);
}

TEST(ZebButton, UnreadableBitmapLeavesTheCaptionAlone) {
    EnsureQtTestApp();
    CZebResourceScope scope;
    CZEBButton button;
    button.setText("Add");
    button.resize(80, 30);
    ASSERT_EQ(button.SetBitmaps(kAddBitmap, 0x646464), 0);
    EXPECT_EQ(button.SetBitmaps(999999, 0x646464), CZEBButton::kBitmapInvalid);
    EXPECT_FALSE(button.HasBitmap());
    EXPECT_TRUE(button.BitmapRect().isNull());
    // A good first bitmap with a bad second one leaves none.
    EXPECT_EQ(button.SetBitmaps(kAddBitmap, 0x646464, 999999, 0), CZEBButton::kBitmapInvalid);
    EXPECT_FALSE(button.HasBitmap());
    // The caption alone is drawn in the button text colour.
    const QImage shot = button.grab().toImage();
    const QColor text = QApplication::palette().color(QPalette::ButtonText);
    bool captionDrawn = false;
    for (int y = 0; y < shot.height() && !captionDrawn; ++y)
        for (int x = 0; x < shot.width() && !captionDrawn; ++x)
            captionDrawn = QColor(shot.pixel(x, y)) == text;
    EXPECT_TRUE(captionDrawn);
}

TEST(ZebButton, HoverHighlightsAFlatButtonUntilTheMouseLeavesOrItIsDisabled) {
    EnsureQtTestApp();
    QWidget window;
    auto* layout = new QVBoxLayout(&window);
    auto* button = new CZEBButton(&window);
    auto* other = new QPushButton("other", &window);
    button->setText("Flat");
    layout->addWidget(button);
    layout->addWidget(other);
    ShowActive(&window);
    const QImage plain = button->grab().toImage();
    QTest::mouseMove(button, button->rect().center());
    EXPECT_TRUE(button->IsHovering());
    EXPECT_NE(button->grab().toImage(), plain);  // raised border
    QTest::mouseMove(other, other->rect().center());
    EXPECT_FALSE(button->IsHovering());

    QTest::mouseMove(button, button->rect().center());
    ASSERT_TRUE(button->IsHovering());
    button->setEnabled(false);
    EXPECT_FALSE(button->IsHovering());
}

TEST(HyperLink, ColoursAndClicks) {
    EnsureQtTestApp();
    CZebRecordingUiService ui;
    QWidget window;
    auto* layout = new QVBoxLayout(&window);
    auto* link = new CHyperLink(&window);
    SetZebControlId(link, 6120);
    link->SetLinkText(L"Vantor on the web");
    link->SetURL(L"https://example.com/vantor");
    link->EnableTooltip(true);
    link->SetTooltipText(L"Opens the web page");
    layout->addWidget(link);
    ShowActive(&window);

    EXPECT_EQ(link->text(), "Vantor on the web");
    EXPECT_TRUE(link->font().underline());
    EXPECT_EQ(link->cursor().shape(), Qt::PointingHandCursor);
    EXPECT_EQ(link->toolTip(), "Opens the web page");
    EXPECT_EQ(link->CurrentColour(), QColor(0, 0, 255));
    QTest::mouseMove(link, link->rect().center());
    EXPECT_EQ(link->palette().color(QPalette::WindowText), QColor(255, 0, 0));

    QTest::mouseClick(link, Qt::LeftButton, {}, link->rect().center());
    EXPECT_EQ(ui.opened, std::vector<std::wstring>{L"https://example.com/vantor"});
    EXPECT_TRUE(link->IsVisited());
    EXPECT_EQ(link->palette().color(QPalette::WindowText), QColor(5, 34, 143));
    QTest::mouseMove(link, link->rect().center() + QPoint(1, 0));
    EXPECT_EQ(link->CurrentColour(), QColor(5, 34, 143));

    link->SetNotifyParent(true);
    QSignalSpy notified(link, &CHyperLink::NotifyParent);
    QTest::mouseClick(link, Qt::LeftButton, {}, link->rect().center());
    ASSERT_EQ(notified.count(), 1);
    EXPECT_EQ(notified[0][0].toUInt(), 0x465u);
    EXPECT_EQ(notified[0][1].toInt(), 6120);
    EXPECT_EQ(ui.opened.size(), 1u);
}

TEST(HyperLink, HelpLinkOpensTheHelpFileAtTheContextSection) {
    EnsureQtTestApp();
    QTemporaryDir root;
    ASSERT_TRUE(root.isValid());
    const QString folder = root.filePath("Help #1 de");
    ASSERT_TRUE(QDir().mkpath(folder));
    const QString file = folder + "/vantor.html";
    QFile help(file);
    ASSERT_TRUE(help.open(QIODevice::WriteOnly));
    help.write("<html></html>");
    help.close();

    CZebRecordingUiService ui;
    QWidget window;
    auto* layout = new QVBoxLayout(&window);
    auto* link = new CHyperLink(&window);
    link->SetLinkText(L"Help on clearances");
    link->SetURL(L"https://example.com/not-this");
    link->SetHelpLink(true, 4711, file.toStdWString());
    layout->addWidget(link);
    ShowActive(&window);

    QTest::mouseClick(link, Qt::LeftButton, {}, link->rect().center());
    ASSERT_EQ(ui.opened.size(), 1u);
    EXPECT_EQ(ui.opened[0], ZebHelpUrl(file.toStdWString(), L"topic-4711"));
    const QUrl url(QString::fromStdWString(ui.opened[0]));
    EXPECT_EQ(url.toLocalFile().toStdString(), file.toStdString());
    EXPECT_EQ(url.fragment().toStdString(), "topic-4711");
    EXPECT_TRUE(link->IsVisited());

    // Context id 0 names no section: the file opens at its start.
    link->SetHelpLink(true, 0, file.toStdWString());
    QTest::mouseClick(link, Qt::LeftButton, {}, link->rect().center());
    ASSERT_EQ(ui.opened.size(), 2u);
    EXPECT_FALSE(QUrl(QString::fromStdWString(ui.opened[1])).hasFragment());
    EXPECT_TRUE(ui.messages.empty());

    // A missing help file is said, and nothing opens.
    const std::wstring missing = root.filePath("gone/vantor.html").toStdWString();
    link->SetHelpLink(true, 12, missing);
    QTest::mouseClick(link, Qt::LeftButton, {}, link->rect().center());
    EXPECT_EQ(ui.opened.size(), 2u);
    ASSERT_EQ(ui.messages.size(), 1u);
    EXPECT_EQ(ui.messages[0].icon, ZebMsgIcon::Warning);
    EXPECT_EQ(ui.messages[0].text, L"The help file " + missing + L" is missing.");

    // Without the help link the link's own target opens again.
    link->SetHelpLink(false, 0, L"");
    QTest::mouseClick(link, Qt::LeftButton, {}, link->rect().center());
    ASSERT_EQ(ui.opened.size(), 3u);
    EXPECT_EQ(ui.opened[2], L"https://example.com/not-this");
}

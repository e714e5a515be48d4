#include "host/screenshot.h"

#include <QApplication>
#include <QDialog>
#include <QPixmap>
#include <QTabWidget>
#include <QTimer>
#include <QWidget>

bool SaveWidgetPicture(QWidget& widget, const std::string& path) {
    return widget.grab().save(QString::fromStdString(path), "PNG");
}

namespace {
// "dialog.png" for tab 1, "dialog-2.png" for tab 2.
std::string TabPicturePath(const std::string& path, int tab) {
    if (tab == 0) return path;
    const size_t dot = path.rfind('.');
    const size_t slash = path.rfind('/');
    const size_t cut =
        dot != std::string::npos && (slash == std::string::npos || dot > slash) ? dot : path.size();
    return path.substr(0, cut) + "-" + std::to_string(tab + 1) + path.substr(cut);
}

bool SaveDialogPictures(QDialog& dialog, const std::string& path) {
    auto* tabs = dialog.findChild<QTabWidget*>();
    if (!tabs || tabs->count() < 2) return SaveWidgetPicture(dialog, path);
    const int shown = tabs->currentIndex();
    bool saved = true;
    for (int tab = 0; tab < tabs->count(); ++tab) {
        tabs->setCurrentIndex(tab);
        saved = SaveWidgetPicture(dialog, TabPicturePath(path, tab)) && saved;
    }
    tabs->setCurrentIndex(shown);
    return saved;
}
}  // namespace

void PictureNextModalDialog(const std::string& path, bool& saved) {
    saved = false;
    auto* timer = new QTimer(qApp);
    QObject::connect(timer, &QTimer::timeout, [timer, path, &saved] {
        auto* dialog = qobject_cast<QDialog*>(QApplication::activeModalWidget());
        if (!dialog || !dialog->isVisible()) return;
        timer->stop();
        timer->deleteLater();
        saved = SaveDialogPictures(*dialog, path);
        dialog->reject();
    });
    // Long enough for the dialog to lay itself out and fill its tables.
    timer->start(200);
}

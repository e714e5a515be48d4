#include "host/screenshot.h"

#include <QApplication>
#include <QDialog>
#include <QPixmap>
#include <QTimer>
#include <QWidget>

bool SaveWidgetPicture(QWidget& widget, const std::string& path) {
    return widget.grab().save(QString::fromStdString(path), "PNG");
}

void PictureNextModalDialog(const std::string& path, bool& saved) {
    saved = false;
    auto* timer = new QTimer(qApp);
    QObject::connect(timer, &QTimer::timeout, [timer, path, &saved] {
        auto* dialog = qobject_cast<QDialog*>(QApplication::activeModalWidget());
        if (!dialog || !dialog->isVisible()) return;
        timer->stop();
        timer->deleteLater();
        saved = SaveWidgetPicture(*dialog, path);
        dialog->reject();
    });
    // Long enough for the dialog to lay itself out and fill its tables.
    timer->start(200);
}

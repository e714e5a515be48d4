#include "platform/hardware_db_bridge.h"

#include <QApplication>

#include <cstdio>

#include "platform/hardware_db_dialog.h"

void LaunchHardwareDBDialog(QWidget* parent) {
    if (!QApplication::instance()) {
        std::fprintf(stderr, "vantor: the hardware database dialog needs the host's window\n");
        return;
    }
    CZEBHardwareDBDlg dialog(parent);
    dialog.exec();
}

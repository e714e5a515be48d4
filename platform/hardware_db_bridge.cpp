#include "platform/hardware_db_bridge.h"

#include <QApplication>
#include <cstdio>

#include "database/service/data_helper.h"
#include "hardware_db_dialog.h"

void LaunchHardwareDBDialog(QWidget* parent) {
    if (!QApplication::instance()) {
        std::fprintf(stderr, "vantor: the hardware database dialog needs the host's window\n");
        return;
    }
    if (!zeb_db::ZEBDataHelper::getInstance()) {
        ShowBridgeMessage(parent,
                          "No hardware database is available. Check that the folder named by "
                          "VANTOR_DATABASE_DIR can be used and holds a sound database.",
                          ZebMsgIcon::Error);
        return;
    }
    CZEBHardwareDBDlg dialog(parent);
    dialog.exec();
}

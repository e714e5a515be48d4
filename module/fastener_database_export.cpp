// The fastener database entry point: the hardware database editor of the bridge library.
#include "platform/hardware_db_bridge.h"

extern "C" __attribute__((visibility("default"))) void LaunchFastenerDatabaseDlg(QWidget* parent) {
    LaunchHardwareDBDialog(parent);
}

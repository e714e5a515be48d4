// The fastener database entry point: the hardware database editor of the bridge library.
#include "framework/module_entry_points.h"
#include "module/entry_guard.h"
#include "platform/hardware_db_bridge.h"

VANTOR_MODULE_API void LaunchFastenerDatabaseDlg(QWidget* parent) {
    RunGuarded("LaunchFastenerDatabaseDlg", [&] { LaunchHardwareDBDialog(parent); });
}

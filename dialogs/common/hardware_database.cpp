#include "dialogs/common/hardware_database.h"

#include "app/assembly_rules_app.h"
#include "database/service/data_helper.h"
#include "platform/hardware_db_bridge.h"

std::list<ZebHardwareRecord> ReadHardwareList() {
    std::list<ZebHardwareRecord> records;
    if (IDatabaseCollector* db = zeb_db::ZEBDataHelper::getInstance())
        if (db->GetHardwareList(records) != ZebDbOk) records.clear();
    return records;
}

void LaunchHardwareDatabase(QWidget* parent) {
    CZebResourceScope scope;
    LaunchHardwareDBDialog(parent);
}

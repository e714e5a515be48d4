// ZEBDatabaseu.so: the database module. Its name is what the rule dialogs show for the database.
#include <string>

#include "database/service/data_helper.h"

extern "C" __attribute__((visibility("default"))) void GetModuleName(std::wstring& text) {
    // Without a usable database the caller's preset text stays.
    IDatabaseCollector* db = zeb_db::ZEBDataHelper::getInstance();
    std::wstring name;
    if (db && db->GetDatabaseName(name) == ZebDbOk && !name.empty()) text = name;
}

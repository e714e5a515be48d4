#include "dialogs/common/fastener_additions.h"

#include <list>
#include <map>
#include <set>

#include "app/assembly_rules_app.h"
#include "database/service/data_helper.h"
#include "framework/case_fold.h"
#include "framework/ui/ui_service.h"

namespace {
void ReportFailedAddition(QWidget* parent) {
    ZebUiMessage(parent, LoadLocalizedString(IDS_DATABASE_SAVE_FAILED), ZebMsgIcon::Error,
                 ZebMsgButtons::Ok);
}

// False when an addition failed (and was reported).
bool AddMissingNames(QWidget* parent, IDatabaseCollector& db,
                     const std::vector<std::wstring>& names) {
    std::list<std::wstring> stored;
    if (db.GetFastenerNames(stored) != ZebDbOk) return true;
    std::set<std::wstring> known;
    for (const std::wstring& name : stored) known.insert(ZebFoldCase(name));
    for (const std::wstring& name : names) {
        if (!known.insert(ZebFoldCase(name)).second) continue;
        if (db.AddFastenerName(name) != ZebDbOk) {
            ReportFailedAddition(parent);
            return false;
        }
    }
    return true;
}

void AddMissingThreads(QWidget* parent, IDatabaseCollector& db,
                       const std::vector<std::pair<std::wstring, std::wstring>>& threads) {
    std::map<std::wstring, std::wstring> stored;
    if (db.GetAttributeData(kFastenerThreadAttributeSet, stored) != ZebDbOk) return;
    std::map<std::wstring, std::wstring> known;  // folded name -> thread text
    for (const auto& [name, thread] : stored) known[ZebFoldCase(name)] = thread;
    for (const auto& [thread, name] : threads) {
        auto [entry, added] = known.emplace(ZebFoldCase(name), thread);
        if (!added && entry->second == thread) continue;
        entry->second = thread;
        if (db.SetFastenerAttribute(name, thread) != ZebDbOk) {
            ReportFailedAddition(parent);
            return;
        }
    }
}
}  // namespace

void AddToFastenerDatabase(QWidget* parent, const FastenerAdditions& additions) {
    IDatabaseCollector* db = zeb_db::ZEBDataHelper::getInstance();
    if (!db) return;
    if (AddMissingNames(parent, *db, additions.names))
        AddMissingThreads(parent, *db, additions.threads);
}

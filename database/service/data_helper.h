#pragma once

#include <string>

#include "database/service/database_collector.h"
#include "database/service/vantor_db_export.h"

namespace zeb_db {

// Entry to the database service. The database is one SQLite file, "vantor.sqlite", in the
// database folder, or, when VANTOR_DATABASE_URL is set and not empty, the PostgreSQL database
// that this libpq connection string (URI or key=value) names.
class VANTOR_DB_API ZEBDataHelper {
public:
    // The service on the database of the current folder, or null (with a message on standard
    // error) when the folder cannot be used or its file is not a sound database of ours. The
    // service stays valid until the process ends; fetch it again at each use, because the folder
    // can change between uses.
    static IDatabaseCollector* getInstance();

    // Puts `service` in the place of the database until it is taken out again with null, so that
    // tests can drive callers over a service that fails; returns the one it replaces.
    static IDatabaseCollector* Substitute(IDatabaseCollector* service);

    // VANTOR_DATABASE_DIR when set and not empty, else $XDG_DATA_HOME/vantor, else
    // ~/.local/share/vantor. Trailing separators removed.
    static std::wstring GetDatabaseFolder();
    static std::wstring GetDatabaseFile();
    // What getInstance uses: the connection string without its password, else the file.
    static std::wstring GetDatabaseLocation();
};

}  // namespace zeb_db

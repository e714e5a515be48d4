#pragma once

#include <string>

#include "database/service/vantor_db_export.h"

namespace zeb_db {

// Moves a team's catalogue between the SQLite file and a PostgreSQL database. The target must be
// new or hold no more than the starter catalogue a new database gets; the copy then replaces the
// target's whole content (starter catalogue included) with the source's, in one transaction, so
// a failed copy leaves the target as it was. Returns 0 done, 1 refused (the target holds data;
// `message` says why), 2 when either database cannot be used or the copy failed and was taken
// back (`message` says why; the server's message is on standard error).
VANTOR_DB_API int CopyFileToServer(const std::wstring& file, const std::string& conninfo,
                                   std::string& message);
VANTOR_DB_API int CopyServerToFile(const std::string& conninfo, const std::wstring& file,
                                   std::string& message);

}  // namespace zeb_db

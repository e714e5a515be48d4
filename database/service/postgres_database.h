#pragma once

#include <memory>
#include <string>

#include "sql_database.h"

namespace zeb_db {

// The database service on a PostgreSQL server, for a team that shares one catalogue. Every
// operation is one transaction on one session; the unique keys on the case-folded names decide
// between two engineers adding the same name at once. A session lost to the server fails the
// operation that finds it lost, and the next operation connects again.
//
// Connects to `conninfo` (a libpq URI or key=value string) and, with `upgrade`, brings the
// schema up to date. Null, with the server's message in `error`, when the server cannot be
// reached within the connect timeout or its database is not one of ours. The service's path is
// the connection string without its password.
std::unique_ptr<SqlDatabase> OpenPostgresDatabase(const std::string& conninfo, std::string& error,
                                                  bool upgrade = true);

}  // namespace zeb_db

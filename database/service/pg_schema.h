#pragma once

#include <libpq-fe.h>

#include "starter_catalogue.h"

namespace zeb_db {

// The schema version this build writes, kept in the meta table under "schema_version".
inline constexpr int kPgSchemaVersion = 1;

// Brings the database to kPgSchemaVersion; a new database gets the tables and the starter
// catalogue. Runs inside the caller's transaction and first takes the schema lock for that
// transaction, so that two programs starting on a new database at once create it once. Throws
// PgError on failure, for a database written by a newer build, and for a database that holds
// another program's tables; such a database is left untouched.
void UpgradePgSchema(PGconn* conn);

// Everything stored, in read-back order.
CatalogueData ReadPgCatalogue(PGconn* conn);
// Empties every table and stores `data` in its place, in the caller's transaction.
void ReplacePgCatalogue(PGconn* conn, const CatalogueData& data);

}  // namespace zeb_db

#pragma once

#include <sqlite3.h>

#include "starter_catalogue.h"

namespace zeb_db {

// The schema version this build writes (PRAGMA user_version).
inline constexpr int kSchemaVersion = 1;

// Brings the database to kSchemaVersion; a new database gets the tables and the starter
// catalogue. Runs inside the caller's write transaction. Throws DbError on failure, and for a
// database written by a newer build, which this one must not touch.
void UpgradeSchema(sqlite3* db);

// Everything stored, in read-back order. Throws DbError.
CatalogueData ReadCatalogue(sqlite3* db);
// Empties every table and stores `data` in its place, in the caller's write transaction.
void ReplaceCatalogue(sqlite3* db, const CatalogueData& data);

}  // namespace zeb_db

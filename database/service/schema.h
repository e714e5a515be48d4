#pragma once

#include "database/service/database_collector.h"
#include "sql_session.h"
#include "starter_catalogue.h"

namespace zeb_db {

// The schema version this build writes.
inline constexpr int kSchemaVersion = 1;

// Brings the database to kSchemaVersion; a new database gets the tables and the starter
// catalogue. Runs inside the caller's write transaction and first takes the back end's schema
// lock, so that two programs starting on a new database at once create it once. Throws DbError on
// failure, for a database written by a newer build and for one that holds another program's
// tables; such a database is left untouched.
void UpgradeSchema(SqlSession& session);

// Everything stored, in read-back order. Throws DbError.
CatalogueData ReadCatalogue(SqlSession& session);
// Empties every table and stores `data` in its place, in the caller's write transaction.
void ReplaceCatalogue(SqlSession& session, const CatalogueData& data);

// Binds ?1 to ?8 to the record's columns in the hardware table's order, designation to
// material_key; the id is the caller's.
SqlQuery& BindHardware(SqlQuery& query, const ZebHardwareRecord& record);

}  // namespace zeb_db

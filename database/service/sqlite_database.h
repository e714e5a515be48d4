#pragma once

#include <memory>
#include <string>

#include "sql_database.h"

namespace zeb_db {

// Opens or creates the SQLite file and brings its schema up to date. Every operation is one
// transaction; writers take the write lock at the start (BEGIN IMMEDIATE) and wait for each other
// through the busy timeout. Null, with the reason in `error`, when the file is not a sound
// database of ours; such a file is not written to.
std::unique_ptr<SqlDatabase> OpenSqliteDatabase(const std::wstring& path, std::string& error);

}  // namespace zeb_db

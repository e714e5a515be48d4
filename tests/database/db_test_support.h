#pragma once

#include <sqlite3.h>
#include <stdlib.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

#include "database/service/data_helper.h"
#include "tests/support/file_bytes.h"

// A fresh database folder for one test, named by VANTOR_DATABASE_DIR while the object lives.
class ScopedDatabaseFolder {
public:
    ScopedDatabaseFolder() {
        std::string pattern =
            (std::filesystem::temp_directory_path() / "vantor_db_XXXXXX").string();
        folder_ = ::mkdtemp(pattern.data());
        Point(folder_);
    }
    ~ScopedDatabaseFolder() {
        ::unsetenv("VANTOR_DATABASE_DIR");
        std::error_code ignored;
        std::filesystem::remove_all(folder_, ignored);
    }
    static void Point(const std::filesystem::path& folder) {
        ::setenv("VANTOR_DATABASE_DIR", folder.c_str(), 1);
    }
    const std::filesystem::path& Folder() const { return folder_; }
    std::filesystem::path File() const { return folder_ / "vantor.sqlite"; }

private:
    std::filesystem::path folder_;
};

// Runs one query on the file directly, past the service: the first column of the first row.
inline std::string QueryFile(const std::filesystem::path& path, const char* sql) {
    sqlite3* db = nullptr;
    std::string value;
    if (sqlite3_open_v2(path.c_str(), &db, SQLITE_OPEN_READONLY, nullptr) == SQLITE_OK) {
        sqlite3_stmt* stmt = nullptr;
        if (sqlite3_prepare_v2(db, sql, -1, &stmt, nullptr) == SQLITE_OK &&
            sqlite3_step(stmt) == SQLITE_ROW && sqlite3_column_text(stmt, 0))
            value = reinterpret_cast<const char*>(sqlite3_column_text(stmt, 0));
        sqlite3_finalize(stmt);
    }
    sqlite3_close(db);
    return value;
}

#pragma once

#include <sqlite3.h>

#include <cstdint>
#include <string>

#include "sql_session.h"

namespace zeb_db {

// One prepared statement. Wide texts are bound and read as UTF-8.
class Statement {
public:
    Statement(sqlite3* db, const char* sql);
    ~Statement();
    Statement(const Statement&) = delete;
    Statement& operator=(const Statement&) = delete;

    Statement& Bind(int index, const std::wstring& text);
    Statement& Bind(int index, int64_t value);
    Statement& Bind(int index, double value);
    // True while there is a row to read.
    bool Step();
    // Runs a statement that returns no rows.
    void Run();
    void Reset();

    std::wstring Text(int column) const;
    int64_t Int(int column) const;
    double Real(int column) const;

private:
    void Check(int rc) const;
    sqlite3* db_;
    sqlite3_stmt* stmt_ = nullptr;
};

// Runs SQL without results (several statements allowed).
void Execute(sqlite3* db, const char* sql);

}  // namespace zeb_db

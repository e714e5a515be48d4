#include "sqlite_statement.h"

#include "framework/text_convert.h"

namespace zeb_db {

Statement::Statement(sqlite3* db, const char* sql) : db_(db) {
    Check(sqlite3_prepare_v2(db, sql, -1, &stmt_, nullptr));
}

Statement::~Statement() { sqlite3_finalize(stmt_); }

void Statement::Check(int rc) const {
    if (rc == SQLITE_OK || rc == SQLITE_ROW || rc == SQLITE_DONE) return;
    const int code = sqlite3_extended_errcode(db_);
    throw DbError(sqlite3_errmsg(db_),
                  code == SQLITE_CONSTRAINT_UNIQUE || code == SQLITE_CONSTRAINT_PRIMARYKEY);
}

Statement& Statement::Bind(int index, const std::wstring& text) {
    const std::string utf8 = ToUtf8(text);
    Check(sqlite3_bind_text(stmt_, index, utf8.data(), static_cast<int>(utf8.size()),
                            SQLITE_TRANSIENT));
    return *this;
}

Statement& Statement::Bind(int index, int64_t value) {
    Check(sqlite3_bind_int64(stmt_, index, value));
    return *this;
}

Statement& Statement::Bind(int index, double value) {
    Check(sqlite3_bind_double(stmt_, index, value));
    return *this;
}

bool Statement::Step() {
    const int rc = sqlite3_step(stmt_);
    Check(rc);
    return rc == SQLITE_ROW;
}

void Statement::Run() {
    while (Step()) {
    }
}

void Statement::Reset() {
    sqlite3_reset(stmt_);
    sqlite3_clear_bindings(stmt_);
}

std::wstring Statement::Text(int column) const {
    const auto* text = reinterpret_cast<const char*>(sqlite3_column_text(stmt_, column));
    return text ? FromUtf8(std::string_view(text, sqlite3_column_bytes(stmt_, column)))
                : std::wstring();
}

int64_t Statement::Int(int column) const { return sqlite3_column_int64(stmt_, column); }

double Statement::Real(int column) const { return sqlite3_column_double(stmt_, column); }

void Execute(sqlite3* db, const char* sql) {
    char* error = nullptr;
    if (sqlite3_exec(db, sql, nullptr, nullptr, &error) != SQLITE_OK) {
        const std::string text = error ? error : sqlite3_errmsg(db);
        sqlite3_free(error);
        throw DbError(text);
    }
}

}  // namespace zeb_db

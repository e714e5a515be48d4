#pragma once

#include <libpq-fe.h>

#include <cstdint>
#include <initializer_list>
#include <memory>
#include <string>
#include <vector>

#include "sql_session.h"

namespace zeb_db {

// A failed server call inside one database operation; the operation rolls back and reports -1.
// `SqlState` is the server's error code ("23505" for a unique key), empty when the connection
// itself failed.
class PgError : public DbError {
public:
    PgError(const std::string& message, std::string sqlState)
        : DbError(message, sqlState == "23505"), sqlState_(std::move(sqlState)) {}
    const std::string& SqlState() const { return sqlState_; }

private:
    std::string sqlState_;
};

// One parameter of a statement, sent as text. Wide texts go as UTF-8 (the session's client
// encoding); numbers in the C locale whatever the user's, and doubles so that they read back
// equal.
class PgParam {
public:
    PgParam(const std::wstring& text);  // NOLINT: parameters are written as plain values
    PgParam(int64_t value);             // NOLINT
    PgParam(double value);              // NOLINT
    const std::string& Text() const { return text_; }

private:
    std::string text_;
};

// The result of one statement, cleared when it goes.
class PgResult {
public:
    explicit PgResult(PGresult* result) : result_(result) {}
    int Rows() const { return PQntuples(result_.get()); }
    // Rows that an INSERT, UPDATE or DELETE touched.
    int64_t Affected() const;
    std::wstring Text(int row, int column) const;
    int64_t Int(int row, int column) const;
    double Real(int row, int column) const;

private:
    struct Clear {
        void operator()(PGresult* result) const { PQclear(result); }
    };
    std::unique_ptr<PGresult, Clear> result_;
};

// Runs one statement with parameters $1, $2, ...; throws PgError with the server's message.
PgResult Exec(PGconn* conn, const char* sql, std::initializer_list<PgParam> params = {});
// The same with the parameters' texts.
PgResult Exec(PGconn* conn, const char* sql, const std::vector<std::string>& params);
// Runs SQL without parameters or results (several statements allowed).
void ExecScript(PGconn* conn, const char* sql);

// The connection string with any password left out, for messages and display: the user:password
// part and a password parameter of a URI, or the password keyword of a key=value string.
std::string WithoutPassword(const std::string& conninfo);

}  // namespace zeb_db

#pragma once

#include <cstdint>
#include <memory>
#include <stdexcept>
#include <string>

namespace zeb_db {

// A failed database call inside one operation; the operation rolls back and reports -1.
// `unique` marks a row refused by a unique key, which some operations answer as a refusal.
class DbError : public std::runtime_error {
public:
    explicit DbError(const std::string& message, bool unique = false)
        : std::runtime_error(message), unique_(unique) {}
    bool IsUniqueViolation() const { return unique_; }

private:
    bool unique_;
};

// One prepared statement. Parameters are written ?1, ?2, ... whatever the back end; wide texts
// go and come back as UTF-8.
class SqlQuery {
public:
    virtual ~SqlQuery() = default;
    virtual SqlQuery& Bind(int index, const std::wstring& text) = 0;
    virtual SqlQuery& Bind(int index, int64_t value) = 0;
    virtual SqlQuery& Bind(int index, double value) = 0;
    // True while there is a row to read.
    virtual bool Step() = 0;
    // Runs a statement that returns no rows; the rows it touched.
    virtual int64_t Run() = 0;
    // Ready to be bound and run again.
    virtual void Reset() = 0;
    virtual std::wstring Text(int column) const = 0;
    virtual int64_t Int(int column) const = 0;
    virtual double Real(int column) const = 0;
};

// What differs between the back ends, as data. The schema's column types are filled into one
// text of the schema; every other statement is the same for both.
struct SqlDialect {
    const char* beginRead;
    const char* beginWrite;
    const char* idColumn;  // an id the database gives
    const char* integer;
    const char* real;
    const char* key;  // case-folded keys compare by code point, so both list in the same order
    // Taken first in a transaction that may create the schema; null when the write lock does.
    const char* schemaLock;
    // One row with 1 when the schema version can be read by readVersion.
    const char* versionStored;
    const char* readVersion;
    // Stores the version written as {version}.
    const char* writeVersion;
    // The tables there are; a database of ours starts from none.
    const char* countTables;
    const char* foreignDatabase;
    // After rows were stored with ids of their own, so that new ids go on from the largest.
    const char* afterExplicitIds;
};

// One connection to a database, used by one operation at a time.
class SqlSession {
public:
    virtual ~SqlSession() = default;
    virtual const SqlDialect& Dialect() const = 0;
    // Where the data is, for messages: the file, or the server without its password.
    virtual const std::wstring& Where() const = 0;
    // Why no transaction may start now; empty when one may.
    virtual std::string Problem() = 0;
    virtual std::unique_ptr<SqlQuery> Prepare(const char* sql) = 0;
    // Runs SQL without parameters or results (several statements allowed).
    virtual void Execute(const char* sql) = 0;
    // Ends a transaction that failed; never throws.
    virtual void Rollback() noexcept = 0;
    // Forgets the connection without closing it: it belongs to the parent of a forked child.
    virtual void Abandon() = 0;

    void Begin(bool write) { Execute(write ? Dialect().beginWrite : Dialect().beginRead); }
    void Commit() { Execute("COMMIT"); }
};

}  // namespace zeb_db

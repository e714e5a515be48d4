#include "sqlite_database.h"

#include <sys/stat.h>

#include "framework/text_convert.h"
#include "schema.h"
#include "sqlite_statement.h"

namespace zeb_db {
namespace {

// Long enough for another engineer's change to finish on a slow network folder.
constexpr int kBusyTimeoutMs = 30000;

constexpr SqlDialect kSqlite{
    .beginRead = "BEGIN",
    .beginWrite = "BEGIN IMMEDIATE",
    .idColumn = "INTEGER PRIMARY KEY",
    .integer = "INTEGER",
    .real = "REAL",
    .key = "TEXT",
    .schemaLock = nullptr,
    .versionStored = "SELECT 1",
    .readVersion = "PRAGMA user_version",
    .writeVersion = "PRAGMA user_version = {version}",
    .countTables = "SELECT count(*) FROM sqlite_master",
    .foreignDatabase = "the file holds another program's database; it is left untouched",
    .afterExplicitIds = nullptr,
};

// The integrity check reads the whole file but never writes; a file that is not a database
// fails already when the check is prepared.
void CheckIntegrity(sqlite3* db) {
    Statement check(db, "PRAGMA quick_check");
    if (!check.Step()) throw DbError("the integrity check gave no answer");
    const std::wstring verdict = check.Text(0);
    if (verdict != L"ok") throw DbError("the database is damaged: " + ToUtf8(verdict));
}

// What is wrong with the place of the rollback journal beside `file`; empty when SQLite may
// create it there. A link planted there would have a transaction written into a file of someone
// else's choosing: SQLite follows links for the journal, so every transaction checks first.
std::string JournalProblem(const std::string& file) {
    const std::string journal = file + "-journal";
    struct stat st {};
    if (::lstat(journal.c_str(), &st) != 0 || S_ISREG(st.st_mode)) return {};
    return "its journal " + journal +
           (S_ISLNK(st.st_mode) ? " is a symbolic link, which is not followed"
                                : " is not a regular file");
}

class SqliteQuery final : public SqlQuery {
public:
    SqliteQuery(sqlite3* db, const char* sql) : db_(db), statement_(db, sql) {}
    SqlQuery& Bind(int index, const std::wstring& text) override { return Bound(index, text); }
    SqlQuery& Bind(int index, int64_t value) override { return Bound(index, value); }
    SqlQuery& Bind(int index, double value) override { return Bound(index, value); }
    bool Step() override { return statement_.Step(); }
    int64_t Run() override {
        statement_.Run();
        return sqlite3_changes(db_);
    }
    void Reset() override { statement_.Reset(); }
    std::wstring Text(int column) const override { return statement_.Text(column); }
    int64_t Int(int column) const override { return statement_.Int(column); }
    double Real(int column) const override { return statement_.Real(column); }

private:
    template <typename T>
    SqlQuery& Bound(int index, const T& value) {
        statement_.Bind(index, value);
        return *this;
    }
    sqlite3* db_;
    Statement statement_;
};

class SqliteSession final : public SqlSession {
public:
    SqliteSession(sqlite3* db, std::wstring path) : db_(db), path_(std::move(path)) {}
    ~SqliteSession() override { sqlite3_close(db_); }
    const SqlDialect& Dialect() const override { return kSqlite; }
    const std::wstring& Where() const override { return path_; }
    std::string Problem() override { return JournalProblem(ToUtf8(path_)); }
    std::unique_ptr<SqlQuery> Prepare(const char* sql) override {
        return std::make_unique<SqliteQuery>(db_, sql);
    }
    void Execute(const char* sql) override { zeb_db::Execute(db_, sql); }
    void Rollback() noexcept override { sqlite3_exec(db_, "ROLLBACK", nullptr, nullptr, nullptr); }
    void Abandon() override { db_ = nullptr; }

private:
    sqlite3* db_;
    std::wstring path_;
};

}  // namespace

std::unique_ptr<SqlDatabase> OpenSqliteDatabase(const std::wstring& path, std::string& error) {
    const std::string file = ToUtf8(path);
    // In a shared folder anyone may plant a link named like the database, to have our writes
    // (or a new database) land in a file of their choosing; only a plain file of that name is
    // ours. SQLite refuses a link itself too, which narrows the gap after this check.
    struct stat st {};
    if (::lstat(file.c_str(), &st) == 0) {
        if (S_ISLNK(st.st_mode)) {
            error = "it is a symbolic link, which is not followed";
            return nullptr;
        }
        if (!S_ISREG(st.st_mode)) {
            error = "it is not a regular file";
            return nullptr;
        }
    }
    error = JournalProblem(file);
    if (!error.empty()) return nullptr;
    sqlite3* db = nullptr;
    const int rc =
        sqlite3_open_v2(file.c_str(), &db,
                        SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE | SQLITE_OPEN_NOFOLLOW, nullptr);
    if (rc != SQLITE_OK) {
        error = db ? sqlite3_errmsg(db) : sqlite3_errstr(rc);
        sqlite3_close(db);
        return nullptr;
    }
    sqlite3_busy_timeout(db, kBusyTimeoutMs);
    auto session = std::make_unique<SqliteSession>(db, path);
    return SqlDatabase::Start(
        std::move(session), true,
        [&] {
            CheckIntegrity(db);
            // The rollback journal, not WAL: WAL needs shared memory, which network folders do
            // not give reliably.
            Execute(db, "PRAGMA journal_mode = DELETE; PRAGMA foreign_keys = ON");
        },
        error);
}

}  // namespace zeb_db

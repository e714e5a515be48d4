#pragma once

#include <libpq-fe.h>
#include <unistd.h>

#include <atomic>
#include <cstdlib>
#include <memory>
#include <string>
#include <utility>

// The throw-away server scripts/test starts: VANTOR_TEST_DATABASE_URL names its maintenance
// database. Empty when no server was started.
inline std::string TestServerUrl() {
    const char* url = std::getenv("VANTOR_TEST_DATABASE_URL");
    return url ? url : "";
}

// scripts/test sets VANTOR_CI_REQUIRE_POSTGRES=1: there a missing server fails the server cases
// instead of skipping them.
inline bool ServerRequired() {
    const char* required = std::getenv("VANTOR_CI_REQUIRE_POSTGRES");
    return required && std::string(required) == "1";
}

// A libpq connection closed when it goes.
using PgConnection = std::unique_ptr<PGconn, decltype(&PQfinish)>;

inline PgConnection ConnectTo(const std::string& conninfo) {
    return PgConnection(PQconnectdb(conninfo.c_str()), &PQfinish);
}

// Runs one statement past the service: the first column of the first row, or "ERROR: ..." .
inline std::string QueryServer(PGconn* conn, const std::string& sql) {
    std::unique_ptr<PGresult, decltype(&PQclear)> result(PQexec(conn, sql.c_str()), &PQclear);
    const ExecStatusType status = PQresultStatus(result.get());
    if (status != PGRES_TUPLES_OK && status != PGRES_COMMAND_OK)
        return std::string("ERROR: ") + PQresultErrorMessage(result.get());
    return PQntuples(result.get()) > 0 ? PQgetvalue(result.get(), 0, 0) : "";
}

// `conninfo` with another database name, as a key=value string.
inline std::string WithDatabaseName(const std::string& conninfo, const std::string& name) {
    std::string out;
    char* error = nullptr;
    PQconninfoOption* options = PQconninfoParse(conninfo.c_str(), &error);
    PQfreemem(error);
    if (!options) return out;
    const auto quoted = [](const std::string& value) {
        std::string q = "'";
        for (char c : value) {
            if (c == '\'' || c == '\\') q += '\\';
            q += c;
        }
        return q + "'";
    };
    for (PQconninfoOption* o = options; o->keyword; ++o) {
        if (!o->val || std::string(o->keyword) == "dbname") continue;
        out += std::string(o->keyword) + "=" + quoted(o->val) + " ";
    }
    PQconninfoFree(options);
    return out + "dbname=" + quoted(name);
}

// A new, empty database of the test server for one test, dropped (with any session still on it)
// when the object goes.
class ScopedServerDatabase {
public:
    explicit ScopedServerDatabase(const std::string& maintenanceUrl)
        : maintenanceUrl_(maintenanceUrl) {
        static std::atomic<int> counter{0};
        name_ = "vantor_test_" + std::to_string(::getpid()) + "_" + std::to_string(++counter);
        const PgConnection conn = ConnectTo(maintenanceUrl_);
        if (PQstatus(conn.get()) != CONNECTION_OK) {
            error_ = PQerrorMessage(conn.get());
            return;
        }
        const std::string created = QueryServer(conn.get(), "CREATE DATABASE " + name_);
        if (created.rfind("ERROR", 0) == 0) error_ = created;
        url_ = WithDatabaseName(maintenanceUrl_, name_);
    }
    ~ScopedServerDatabase() {
        const PgConnection conn = ConnectTo(maintenanceUrl_);
        QueryServer(conn.get(), "DROP DATABASE IF EXISTS " + name_ + " WITH (FORCE)");
    }
    ScopedServerDatabase(const ScopedServerDatabase&) = delete;
    ScopedServerDatabase& operator=(const ScopedServerDatabase&) = delete;

    bool Ok() const { return error_.empty(); }
    const std::string& Error() const { return error_; }
    const std::string& Name() const { return name_; }
    // The database's own connection string.
    const std::string& Url() const { return url_; }
    // A connection of the test's own, past the service.
    PgConnection Connect() const { return ConnectTo(url_); }
    PgConnection ConnectMaintenance() const { return ConnectTo(maintenanceUrl_); }

private:
    std::string maintenanceUrl_;
    std::string name_;
    std::string url_;
    std::string error_;
};

// One parameter of a connection string, empty when it is not given.
inline std::string ConninfoValue(const std::string& conninfo, const std::string& key) {
    char* error = nullptr;
    PQconninfoOption* options = PQconninfoParse(conninfo.c_str(), &error);
    PQfreemem(error);
    std::string value;
    for (PQconninfoOption* o = options; o && o->keyword; ++o)
        if (o->val && key == o->keyword) value = o->val;
    PQconninfoFree(options);
    return value;
}

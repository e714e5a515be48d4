#include "database/service/db_copy.h"

#include <sys/stat.h>
#include <unistd.h>

#include <memory>
#include <optional>

#include "framework/text_convert.h"
#include "pg_statement.h"
#include "postgres_database.h"
#include "schema.h"
#include "sqlite_database.h"

namespace zeb_db {
namespace {

constexpr int kDone = 0;
constexpr int kRefused = 1;
constexpr int kUnusable = 2;

bool FileExists(const std::wstring& file) {
    struct stat st {};
    return ::lstat(ToUtf8(file).c_str(), &st) == 0;
}

const char* kNotEmpty =
    "holds data beyond the starter catalogue of a new database; copy only into an empty one";

}  // namespace

int CopyFileToServer(const std::wstring& file, const std::string& conninfo, std::string& message) {
    const std::string fileText = ToUtf8(file);
    if (!FileExists(file)) {
        message = "there is no database file " + fileText;
        return kUnusable;
    }
    std::string error;
    std::unique_ptr<SqlDatabase> source = OpenSqliteDatabase(file, error);
    if (!source) {
        message = "the database " + fileText + " cannot be used: " + error;
        return kUnusable;
    }
    CatalogueData data;
    // A write transaction only to read under the file's lock; the body never writes.
    if (source->WithTransaction("copy (read)", [&](SqlSession& session) {
            data = ReadCatalogue(session);
            return ZebDbOk;
        }) != ZebDbOk) {
        message = "the database " + fileText + " could not be read";
        return kUnusable;
    }
    const std::string target = WithoutPassword(conninfo);
    std::unique_ptr<SqlDatabase> server = OpenPostgresDatabase(conninfo, error, false);
    if (!server) {
        message = "the database " + target + " cannot be used: " + error;
        return kUnusable;
    }
    // Schema, check and copy in one transaction: a failure leaves the server as it was.
    const int32_t result = server->WithTransaction("copy", [&](SqlSession& session) {
        UpgradeSchema(session);
        if (!IsStarterCatalogue(ReadCatalogue(session))) return ZebDbExists;
        ReplaceCatalogue(session, data);
        return ZebDbOk;
    });
    if (result == ZebDbExists) {
        message = "the database " + target + " " + kNotEmpty;
        return kRefused;
    }
    if (result != ZebDbOk) {
        message = "the copy into " + target + " failed and was taken back";
        return kUnusable;
    }
    message = "copied " + fileText + " to " + target;
    return kDone;
}

int CopyServerToFile(const std::string& conninfo, const std::wstring& file, std::string& message) {
    const std::string source = WithoutPassword(conninfo);
    std::string error;
    std::unique_ptr<SqlDatabase> server = OpenPostgresDatabase(conninfo, error);
    if (!server) {
        message = "the database " + source + " cannot be used: " + error;
        return kUnusable;
    }
    std::optional<CatalogueData> data;
    if (server->WithTransaction("copy (read)", [&](SqlSession& session) {
            data = ReadCatalogue(session);
            return ZebDbOk;
        }) != ZebDbOk) {
        message = "the database " + source + " could not be read";
        return kUnusable;
    }
    const std::string fileText = ToUtf8(file);
    const bool created = !FileExists(file);
    std::unique_ptr<SqlDatabase> target = OpenSqliteDatabase(file, error);
    if (!target) {
        message = "the database " + fileText + " cannot be used: " + error;
        return kUnusable;
    }
    const int32_t result = target->WithTransaction("copy", [&](SqlSession& session) {
        if (!IsStarterCatalogue(ReadCatalogue(session))) return ZebDbExists;
        ReplaceCatalogue(session, *data);
        return ZebDbOk;
    });
    target.reset();
    if (result == ZebDbOk) {
        message = "copied " + source + " to " + fileText;
        return kDone;
    }
    // A file made for the copy goes again; one that was there keeps its content.
    if (created) ::unlink(fileText.c_str());
    if (result == ZebDbExists) {
        message = "the database " + fileText + " " + kNotEmpty;
        return kRefused;
    }
    message = "the copy into " + fileText + " failed and was taken back";
    return kUnusable;
}

}  // namespace zeb_db

#include "database/service/data_helper.h"

#include <sys/stat.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <map>
#include <memory>
#include <utility>
#include <vector>

#include "framework/folder_check.h"
#include "framework/text_convert.h"
#include "pg_statement.h"
#include "postgres_database.h"
#include "sqlite_database.h"

namespace zeb_db {
namespace {

std::wstring EnvFolder(const char* name) {
    const char* value = std::getenv(name);
    return value ? FromUtf8(value) : std::wstring();
}

std::wstring WithoutTrailingSeparators(std::wstring path) {
    while (path.size() > 1 && (path.back() == L'/' || path.back() == L'\\')) path.pop_back();
    return path;
}

// One open database per file. A service handed out stays valid to the end of the process, so a
// caller that kept it across a change of folder still holds a live object.
struct OpenDatabase {
    std::unique_ptr<SqlDatabase> service;
    dev_t device = 0;
    ino_t inode = 0;
};

struct Cache {
    pid_t owner = ::getpid();
    std::map<std::wstring, OpenDatabase> open;
    std::vector<std::unique_ptr<SqlDatabase>> retired;            // replaced files, kept alive
    std::map<std::string, std::unique_ptr<SqlDatabase>> servers;  // by connection string
};

Cache& TheCache() {
    static Cache cache;
    // A forked child gets its own connections; the parent's stay the parent's.
    if (cache.owner != ::getpid()) {
        for (auto& [path, entry] : cache.open) entry.service->Abandon();
        for (auto& service : cache.retired) service->Abandon();
        // Closing a session would tell the server the parent is done with it.
        for (auto& [url, service] : cache.servers) service->Abandon();
        cache.open.clear();
        cache.retired.clear();
        cache.servers.clear();
        cache.owner = ::getpid();
    }
    return cache;
}

std::string ServerUrl() {
    const char* url = std::getenv("VANTOR_DATABASE_URL");
    return url ? url : "";
}

// The service on the server; a server that cannot be reached is asked again at the next fetch.
IDatabaseCollector* ServerInstance(Cache& cache, const std::string& url) {
    auto found = cache.servers.find(url);
    if (found != cache.servers.end()) return found->second.get();
    std::string error;
    std::unique_ptr<SqlDatabase> service = OpenPostgresDatabase(url, error);
    if (!service) {
        std::fprintf(stderr, "vantor: the database %s cannot be used: %s\n",
                     WithoutPassword(url).c_str(), error.c_str());
        return nullptr;
    }
    return (cache.servers[url] = std::move(service)).get();
}

IDatabaseCollector* g_substitute = nullptr;

bool SameFile(const OpenDatabase& entry, const struct stat& st) {
    return entry.device == st.st_dev && entry.inode == st.st_ino;
}

}  // namespace

std::wstring ZEBDataHelper::GetDatabaseFolder() {
    std::wstring folder = EnvFolder("VANTOR_DATABASE_DIR");
    if (folder.empty()) {
        const std::wstring data = EnvFolder("XDG_DATA_HOME");
        folder = data.empty() ? EnvFolder("HOME") + L"/.local/share/vantor" : data + L"/vantor";
    }
    return WithoutTrailingSeparators(folder);
}

std::wstring ZEBDataHelper::GetDatabaseFile() { return GetDatabaseFolder() + L"/vantor.sqlite"; }

std::wstring ZEBDataHelper::GetDatabaseLocation() {
    const std::string url = ServerUrl();
    return url.empty() ? GetDatabaseFile() : FromUtf8(WithoutPassword(url));
}

IDatabaseCollector* ZEBDataHelper::Substitute(IDatabaseCollector* service) {
    return std::exchange(g_substitute, service);
}

IDatabaseCollector* ZEBDataHelper::getInstance() {
    if (g_substitute) return g_substitute;
    Cache& cache = TheCache();
    if (const std::string url = ServerUrl(); !url.empty()) return ServerInstance(cache, url);
    const std::wstring file = GetDatabaseFile();
    const std::string utf8 = ToUtf8(file);
    struct stat st {};
    auto found = cache.open.find(file);
    if (found != cache.open.end()) {
        // lstat: a link put in the file's place is a replacement, and is refused on reopening.
        if (::lstat(utf8.c_str(), &st) == 0 && SameFile(found->second, st))
            return found->second.service.get();
        // The file was removed or replaced since it was opened.
        cache.retired.push_back(std::move(found->second.service));
        cache.open.erase(found);
    }
    const std::wstring folder = GetDatabaseFolder();
    // The user's own data folder may lack its parents on a new account; a folder named by the
    // administrators must exist up to its last level.
    if (EnvFolder("VANTOR_DATABASE_DIR").empty()) ZebCreateFolderWithParents(folder);
    if (!ZebIsFolderUsable(folder)) {
        std::fprintf(stderr, "vantor: the database folder %s cannot be used\n",
                     ToUtf8(folder).c_str());
        return nullptr;
    }
    std::string error;
    std::unique_ptr<SqlDatabase> service = OpenSqliteDatabase(file, error);
    if (!service || ::lstat(utf8.c_str(), &st) != 0) {
        std::fprintf(stderr, "vantor: the database %s cannot be used: %s\n", utf8.c_str(),
                     error.c_str());
        return nullptr;
    }
    OpenDatabase& entry = cache.open[file];
    entry = {std::move(service), st.st_dev, st.st_ino};
    return entry.service.get();
}

}  // namespace zeb_db

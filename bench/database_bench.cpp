// Costs of the database service as the dialogs use it: fetched afresh at each use, one read,
// one change per transaction.
#include <benchmark/benchmark.h>
#include <libpq-fe.h>
#include <stdlib.h>
#include <unistd.h>

#include <cstdio>
#include <filesystem>
#include <list>
#include <memory>
#include <string>

#include "database/service/data_helper.h"

namespace {

// A database folder of its own for the run, removed at exit.
struct BenchFolderOwner {
    std::filesystem::path folder;
    BenchFolderOwner() {
        std::string pattern =
            (std::filesystem::temp_directory_path() / "vantor_bench_XXXXXX").string();
        folder = ::mkdtemp(pattern.data());
        ::setenv("VANTOR_DATABASE_DIR", folder.c_str(), 1);
    }
    ~BenchFolderOwner() {
        std::error_code ignored;
        std::filesystem::remove_all(folder, ignored);
    }
};

void BenchFolder() { static BenchFolderOwner owner; }

// Fetching the service again for a folder already open costs an environment lookup and a stat of
// the file (a few microseconds), so callers can fetch it at every use.
void BM_GetInstance(benchmark::State& state) {
    BenchFolder();
    zeb_db::ZEBDataHelper::getInstance();
    for (auto _ : state) benchmark::DoNotOptimize(zeb_db::ZEBDataHelper::getInstance());
}
BENCHMARK(BM_GetInstance);

void BM_GetFastenerNames(benchmark::State& state) {
    BenchFolder();
    std::list<std::wstring> names;
    for (auto _ : state)
        if (zeb_db::ZEBDataHelper::getInstance()->GetFastenerNames(names) != ZebDbOk)
            state.SkipWithError("the names could not be read");
    state.counters["names"] = static_cast<double>(names.size());
}
BENCHMARK(BM_GetFastenerNames);

// One durable transaction per change: dominated by the disk's flush.
void BM_AddFastenerName(benchmark::State& state) {
    BenchFolder();
    long n = 0;
    for (auto _ : state)
        if (zeb_db::ZEBDataHelper::getInstance()->AddFastenerName(L"Bench " +
                                                                  std::to_wstring(n++)) != ZebDbOk)
            state.SkipWithError("a name could not be stored");
}
BENCHMARK(BM_AddFastenerName)->Unit(benchmark::kMillisecond);

// ---- 10,000 fastener names, SQLite file against a local PostgreSQL server ----

// The server: VANTOR_TEST_DATABASE_URL (its maintenance database), else a throw-away one this
// run starts with scripts/pg_server and stops at exit.
struct BenchServer {
    std::string url;
    std::filesystem::path folder;
    ~BenchServer() {
        if (!folder.empty()) {
            const std::string script = std::string(VANTOR_SOURCE_DIR) + "/scripts/pg_server";
            std::system((script + " stop '" + folder.string() + "' >/dev/null 2>&1").c_str());
            std::error_code ignored;
            std::filesystem::remove_all(folder, ignored);
        }
    }
};

const std::string& ServerUrl() {
    static BenchServer server = [] {
        BenchServer s;
        if (const char* url = std::getenv("VANTOR_TEST_DATABASE_URL"); url && *url) {
            s.url = url;
            return s;
        }
        std::string pattern =
            (std::filesystem::temp_directory_path() / "vantor_bench_pg_XXXXXX").string();
        s.folder = ::mkdtemp(pattern.data());
        const std::string script = std::string(VANTOR_SOURCE_DIR) + "/scripts/pg_server";
        if (std::system((script + " start '" + s.folder.string() + "'").c_str()) == 0)
            s.url = "postgresql://postgres@/postgres?host=" + s.folder.string() + "&port=5432";
        return s;
    }();
    return server.url;
}

// Runs one statement on the server's maintenance database; false when it failed.
bool Maintain(const std::string& sql) {
    std::unique_ptr<PGconn, decltype(&PQfinish)> conn(PQconnectdb(ServerUrl().c_str()), &PQfinish);
    std::unique_ptr<PGresult, decltype(&PQclear)> result(PQexec(conn.get(), sql.c_str()), &PQclear);
    return PQresultStatus(result.get()) == PGRES_COMMAND_OK;
}

// The server's connection string naming another database, as key=value pairs.
std::string WithDatabase(const std::string& conninfo, const std::string& name) {
    char* error = nullptr;
    PQconninfoOption* options = PQconninfoParse(conninfo.c_str(), &error);
    PQfreemem(error);
    std::string out;
    for (PQconninfoOption* o = options; o && o->keyword; ++o)
        if (o->val && std::string(o->keyword) != "dbname")
            out += std::string(o->keyword) + "='" + o->val + "' ";
    PQconninfoFree(options);
    return out + "dbname=" + name;
}

// Adds 10,000 names one transaction each, as the name dialog's import does, then reads the list
// back once: on a new database each iteration.
void AddAndList(benchmark::State& state, bool server) {
    constexpr int kNames = 10000;
    size_t listed = 0;
    int run = 0;
    std::unique_ptr<BenchFolderOwner> folder;
    for (auto _ : state) {
        state.PauseTiming();
        folder = std::make_unique<BenchFolderOwner>();
        const std::string name =
            "vantor_bench_" + std::to_string(::getpid()) + "_" + std::to_string(++run);
        if (server) {
            if (ServerUrl().empty() || !Maintain("CREATE DATABASE " + name)) {
                state.SkipWithError(
                    "no PostgreSQL server (VANTOR_TEST_DATABASE_URL or scripts/pg_server)");
                break;
            }
            ::setenv("VANTOR_DATABASE_URL", WithDatabase(ServerUrl(), name).c_str(), 1);
        } else {
            ::unsetenv("VANTOR_DATABASE_URL");
        }
        // The new database's schema and starter catalogue are not part of the measure.
        zeb_db::ZEBDataHelper::getInstance();
        state.ResumeTiming();

        bool stored = true;
        for (int i = 0; i < kNames; ++i)
            stored = zeb_db::ZEBDataHelper::getInstance()->AddFastenerName(
                         L"Bench M" + std::to_wstring(i)) == ZebDbOk &&
                     stored;
        std::list<std::wstring> names;
        if (!stored || zeb_db::ZEBDataHelper::getInstance()->GetFastenerNames(names) != ZebDbOk)
            state.SkipWithError("the names could not be stored and read back");
        listed = names.size();

        state.PauseTiming();
        ::unsetenv("VANTOR_DATABASE_URL");
        if (server) Maintain("DROP DATABASE " + name + " WITH (FORCE)");
        state.ResumeTiming();
    }
    state.counters["names"] = static_cast<double>(listed);
}

void BM_AddAndList10kSqlite(benchmark::State& state) { AddAndList(state, false); }
BENCHMARK(BM_AddAndList10kSqlite)->Unit(benchmark::kMillisecond)->Iterations(1);

void BM_AddAndList10kPostgres(benchmark::State& state) { AddAndList(state, true); }
BENCHMARK(BM_AddAndList10kPostgres)->Unit(benchmark::kMillisecond)->Iterations(1);

}  // namespace

BENCHMARK_MAIN();

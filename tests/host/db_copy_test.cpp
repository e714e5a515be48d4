// vantor-rules db copy between the SQLite file of a database folder and a PostgreSQL database of
// the test server (VANTOR_TEST_DATABASE_URL, started by scripts/test).
#include <gtest/gtest.h>

#include <filesystem>
#include <memory>
#include <string>

#include "tests/database/server_test_support.h"
#include "tests/support/host_run.h"
#include "tests/support/scoped_temp_dir.h"

namespace fs = std::filesystem;

namespace {

std::string ShellQuoted(const std::string& text) {
    std::string quoted = "'";
    for (char c : text) quoted += c == '\'' ? std::string("'\\''") : std::string(1, c);
    return quoted + "'";
}

class DbCopy : public testing::Test {
protected:
    void SetUp() override {
        if (TestServerUrl().empty()) {
            if (ServerRequired())
                FAIL() << "VANTOR_CI_REQUIRE_POSTGRES=1 but VANTOR_TEST_DATABASE_URL is not set: "
                          "the test server did not start";
            GTEST_SKIP() << "no PostgreSQL server to copy to: VANTOR_TEST_DATABASE_URL is not set "
                            "(scripts/test starts one with scripts/pg_server)";
        }
    }

    // A new database of the test server, dropped after the test.
    const ScopedServerDatabase& NewServerDatabase() {
        servers_.push_back(std::make_unique<ScopedServerDatabase>(TestServerUrl()));
        EXPECT_TRUE(servers_.back()->Ok()) << servers_.back()->Error();
        return *servers_.back();
    }

    // vantor-rules on the SQLite file of `folder`, or on the server database `url` when given.
    HostRun Db(const fs::path& folder, const std::string& args, const std::string& url = "") {
        std::string prefix = "VANTOR_DATABASE_DIR=" + ShellQuoted(folder.string());
        prefix +=
            url.empty() ? " VANTOR_DATABASE_URL=" : " VANTOR_DATABASE_URL=" + ShellQuoted(url);
        return RunHost("db " + args, temp_.Path() / "stderr.txt", prefix);
    }

    // What the three lists print.
    std::string Lists(const fs::path& folder, const std::string& url = "") {
        std::string all;
        for (const char* list : {"fasteners list", "materials list", "ignore list"}) {
            const HostRun run = Db(folder, list, url);
            EXPECT_EQ(run.status, 0) << list << ": " << run.err;
            all += std::string("## ") + list + "\n" + run.out;
        }
        return all;
    }

    fs::path Folder(const char* name) {
        const fs::path folder = temp_.Path() / name;
        fs::create_directories(folder);
        return folder;
    }

    ScopedTempDir temp_{"vantor_db_copy_"};
    std::vector<std::unique_ptr<ScopedServerDatabase>> servers_;
};

}  // namespace

TEST_F(DbCopy, FileToServerAndBackGivesTheSameListsAndRefusesTargetsThatHoldData) {
    // A team's file: the starter catalogue changed in every list.
    const fs::path team = Folder("team");
    ASSERT_EQ(Db(team, "fasteners add 'Sonderschraube Ä7'").status, 0);
    ASSERT_EQ(Db(team, "fasteners delete 'ISO 4017 M3'").status, 0);
    ASSERT_EQ(Db(team, "fasteners rename 'iso 4762 m5' 'ISO 4762 M5 (Zn)'").status, 0);
    ASSERT_EQ(Db(team, "materials add 'Titanium alloys' 'Ti-6Al-4V'").status, 0);
    ASSERT_EQ(Db(team, "materials delete Brass CuZn37").status, 0);
    ASSERT_EQ(Db(team, "ignore set 'Welle Ø20' bracket bracket").status, 0);
    const std::string teamLists = Lists(team);
    const std::string starterLists = Lists(Folder("starter"));
    ASSERT_NE(teamLists, starterLists);

    const ScopedServerDatabase& server = NewServerDatabase();
    HostRun run = Db(team, "copy --to " + ShellQuoted(server.Url() + " password=s3cret"));
    EXPECT_EQ(run.status, 0) << run.err;
    EXPECT_EQ(run.out.find("s3cret"), std::string::npos) << run.out;
    EXPECT_EQ(Lists(team, server.Url()), teamLists);

    // The server now holds data: a second copy is refused and changes nothing.
    ASSERT_EQ(Db(team, "fasteners add 'Only in the file'").status, 0);
    run = Db(team, "copy --to " + ShellQuoted(server.Url()));
    EXPECT_EQ(run.status, 1);
    EXPECT_NE(run.err.find("holds data beyond the starter catalogue"), std::string::npos)
        << run.err;
    EXPECT_EQ(Lists(team, server.Url()), teamLists);

    // Back into a new file.
    const fs::path fresh = Folder("fresh");
    run = Db(fresh, "copy --from " + ShellQuoted(server.Url()));
    EXPECT_EQ(run.status, 0) << run.err;
    EXPECT_EQ(Lists(fresh), teamLists);

    // A file that holds data is refused too and keeps it.
    const std::string before = FileBytes(team / "vantor.sqlite");
    run = Db(team, "copy --from " + ShellQuoted(server.Url()));
    EXPECT_EQ(run.status, 1);
    EXPECT_NE(run.err.find("holds data beyond the starter catalogue"), std::string::npos)
        << run.err;
    EXPECT_EQ(FileBytes(team / "vantor.sqlite"), before);

    // A server database a service already opened, still at its starter catalogue, takes a copy.
    const ScopedServerDatabase& opened = NewServerDatabase();
    EXPECT_EQ(Lists(fresh, opened.Url()), starterLists);
    EXPECT_EQ(Db(fresh, "copy --to " + ShellQuoted(opened.Url())).status, 0);
    EXPECT_EQ(Lists(fresh, opened.Url()), teamLists);
}

TEST_F(DbCopy, FailedCopyLeavesBothDatabasesAsTheyWere) {
    const fs::path team = Folder("team");
    ASSERT_EQ(Db(team, "fasteners add 'Stud M7'").status, 0);
    ASSERT_EQ(Db(team, "ignore set 'Welle Ø20'").status, 0);
    const std::string teamLists = Lists(team);
    const std::string teamBytes = FileBytes(team / "vantor.sqlite");

    // The server fails the last table of the copy, after the others were replaced.
    const ScopedServerDatabase& server = NewServerDatabase();
    const std::string starterLists = Lists(team / "unused", server.Url());
    const PgConnection conn = server.Connect();
    ASSERT_EQ(QueryServer(conn.get(),
                          "CREATE FUNCTION refuse() RETURNS trigger LANGUAGE plpgsql AS"
                          " $$BEGIN RAISE EXCEPTION 'no room for %', NEW.name; END$$;"
                          " CREATE TRIGGER refuse BEFORE INSERT ON ignore_item"
                          " FOR EACH ROW EXECUTE FUNCTION refuse()"),
              "");
    HostRun run = Db(team, "copy --to " + ShellQuoted(server.Url()));
    EXPECT_EQ(run.status, 2);
    EXPECT_NE(run.err.find("no room for Welle Ø20"), std::string::npos) << run.err;
    EXPECT_NE(run.err.find("taken back"), std::string::npos) << run.err;
    EXPECT_EQ(Lists(team / "unused", server.Url()), starterLists);
    EXPECT_EQ(FileBytes(team / "vantor.sqlite"), teamBytes);

    // A server that cannot be reached: no file is made for the copy, the source stays.
    const fs::path fresh = Folder("fresh");
    run = Db(fresh, "copy --from " + ShellQuoted("host=" + fresh.string() + " dbname=x"));
    EXPECT_EQ(run.status, 2);
    EXPECT_NE(run.err.find("No such file or directory"), std::string::npos) << run.err;
    EXPECT_FALSE(fs::exists(fresh / "vantor.sqlite"));
    run = Db(team, "copy --to " + ShellQuoted("host=" + fresh.string() + " dbname=x"));
    EXPECT_EQ(run.status, 2);
    EXPECT_EQ(Lists(team), teamLists);

    // No file to copy from, and bad arguments.
    EXPECT_EQ(Db(Folder("empty"), "copy --to " + ShellQuoted(server.Url())).status, 2);
    EXPECT_FALSE(fs::exists(temp_.Path() / "empty" / "vantor.sqlite"));
    EXPECT_EQ(Db(team, "copy --sideways x").status, 2);
    EXPECT_EQ(Db(team, "copy --to").status, 2);
}

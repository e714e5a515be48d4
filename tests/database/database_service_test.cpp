#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <list>
#include <map>
#include <memory>
#include <set>
#include <string>

#include "database/service/data_helper.h"
#include "database/service/database_collector.h"
#include "tests/database/db_test_support.h"
#include "tests/database/server_test_support.h"
#include "tests/support/scoped_env.h"

namespace fs = std::filesystem;
using zeb_db::ZEBDataHelper;

namespace {

bool Contains(const std::list<std::wstring>& list, const std::wstring& text) {
    return std::find(list.begin(), list.end(), text) != list.end();
}

std::list<std::wstring> FastenerNames(IDatabaseCollector& db) {
    std::list<std::wstring> names;
    EXPECT_EQ(db.GetFastenerNames(names), ZebDbOk);
    return names;
}

ZebMaterialPairList Pairs(IDatabaseCollector& db) {
    ZebMaterialPairList pairs;
    EXPECT_EQ(db.GetMaterialPairs(pairs, 0), ZebDbOk);
    return pairs;
}

std::list<std::wstring> Groups(IDatabaseCollector& db) {
    std::list<std::wstring> groups;
    EXPECT_EQ(db.GetMaterialGroups(groups, 0), ZebDbOk);
    return groups;
}

enum class Backend { Sqlite, Postgres };

void PrintTo(Backend backend, std::ostream* out) {
    *out << (backend == Backend::Sqlite ? "SQLite file" : "PostgreSQL server");
}

std::string BackendName(const testing::TestParamInfo<Backend>& info) {
    return info.param == Backend::Sqlite ? "Sqlite" : "Postgres";
}

// Each case on a new database of its back end: a new folder for the SQLite file, a new database
// on the test server (VANTOR_TEST_DATABASE_URL) for PostgreSQL.
class DatabaseServiceOn : public testing::TestWithParam<Backend> {
protected:
    void SetUp() override {
        ::unsetenv("VANTOR_DATABASE_URL");
        if (!OnServer()) return;
        const std::string url = TestServerUrl();
        if (url.empty()) {
            if (ServerRequired())
                FAIL() << "VANTOR_CI_REQUIRE_POSTGRES=1 but VANTOR_TEST_DATABASE_URL is not set: "
                          "the test server did not start";
            GTEST_SKIP() << "no PostgreSQL server to test against: VANTOR_TEST_DATABASE_URL is not "
                            "set (scripts/test starts one with scripts/pg_server)";
        }
        server_ = std::make_unique<ScopedServerDatabase>(url);
        ASSERT_TRUE(server_->Ok())
            << "the test server cannot create a database: " << server_->Error();
        ::setenv("VANTOR_DATABASE_URL", server_->Url().c_str(), 1);
    }
    void TearDown() override {
        ::unsetenv("VANTOR_DATABASE_URL");
        server_.reset();
    }
    bool OnServer() const { return GetParam() == Backend::Postgres; }
    static std::wstring Wide(const std::string& ascii) { return {ascii.begin(), ascii.end()}; }

    ScopedDatabaseFolder folder_;
    std::unique_ptr<ScopedServerDatabase> server_;
};
INSTANTIATE_TEST_SUITE_P(Backends, DatabaseServiceOn,
                         testing::Values(Backend::Sqlite, Backend::Postgres), BackendName);

// What only a server has: sessions that can be lost, connection strings, other programs' tables.
class ServerDatabase : public DatabaseServiceOn {};
INSTANTIATE_TEST_SUITE_P(Backends, ServerDatabase, testing::Values(Backend::Postgres), BackendName);

}  // namespace

TEST_P(DatabaseServiceOn, FreshFolderGetsTheStarterCatalogueInARealFile) {
    IDatabaseCollector* db = ZEBDataHelper::getInstance();
    ASSERT_NE(db, nullptr);
    EXPECT_EQ(db->GetDatabasePath(), OnServer() ? Wide(server_->Url()) : folder_.File().wstring());

    const std::list<std::wstring> names = FastenerNames(*db);
    EXPECT_GE(names.size(), 30u);
    EXPECT_TRUE(Contains(names, L"ISO 4017 M8"));
    EXPECT_TRUE(Contains(names, L"ISO 4762 M24"));
    std::list<std::wstring> alternates;
    EXPECT_EQ(db->GetAlternateFastenerNames(alternates), ZebDbOk);
    EXPECT_TRUE(Contains(alternates, L"DIN 933 M8"));

    std::map<std::wstring, std::wstring> threads{{L"stale", L"entry"}};
    EXPECT_EQ(db->GetAttributeData(kFastenerThreadAttributeSet, threads), ZebDbOk);
    EXPECT_EQ(threads.count(L"stale"), 0u);
    EXPECT_EQ(threads[L"ISO 4017 M8"], L"M8x1.25");
    EXPECT_EQ(threads[L"ISO 4032 M3"], L"M3x0.5");
    // every starter designation has its thread
    for (const std::wstring& name : names) EXPECT_FALSE(threads[name].empty()) << name.size();

    std::list<std::wstring> sizes;
    EXPECT_EQ(db->GetThreadSizes(sizes), ZebDbOk);
    EXPECT_EQ(sizes.front(), L"M3x0.5");
    EXPECT_EQ(sizes.back(), L"M24x3");

    const std::list<std::wstring> groups = Groups(*db);
    for (const wchar_t* group :
         {L"Steels", L"Stainless steels", L"Aluminium alloys", L"Brass", L"Plastics"})
        EXPECT_TRUE(Contains(groups, group));
    EXPECT_TRUE(std::is_sorted(groups.begin(), groups.end()));
    std::wstring steels;
    EXPECT_EQ(db->GetGroupMaterials(L"STEELS", steels, 0), ZebDbOk);
    EXPECT_EQ(steels, L"11SMnPb30;42CrMo4;C45;S235JR;S355J2");

    std::list<ZebHardwareRecord> hardware;
    EXPECT_EQ(db->GetHardwareList(hardware), ZebDbOk);
    ASSERT_FALSE(hardware.empty());
    const auto m8 = std::find_if(hardware.begin(), hardware.end(), [](const ZebHardwareRecord& r) {
        return r.designation == L"ISO 4017 M8x20";
    });
    ASSERT_NE(m8, hardware.end());
    EXPECT_EQ(m8->thread, L"M8x1.25");
    EXPECT_EQ(m8->length, 20.0);

    std::wstring name;
    EXPECT_EQ(db->GetDatabaseName(name), ZebDbOk);
    EXPECT_EQ(name, L"Vantor Database");

    if (!OnServer()) {
        // The data is in the file itself, with its schema version and the rollback journal.
        EXPECT_EQ(QueryFile(folder_.File(), "PRAGMA user_version"), "1");
        EXPECT_EQ(QueryFile(folder_.File(), "PRAGMA journal_mode"), "delete");
        EXPECT_EQ(
            QueryFile(folder_.File(), "SELECT name FROM fastener_name WHERE name = 'ISO 4017 M8'"),
            "ISO 4017 M8");
        return;
    }
    // The data is on the server, with its schema version; the unique key on the folded name, not
    // a check before the insert, keeps two spellings of one name apart.
    const PgConnection conn = server_->Connect();
    EXPECT_EQ(QueryServer(conn.get(), "SELECT value FROM meta WHERE key = 'schema_version'"), "1");
    EXPECT_EQ(QueryServer(conn.get(), "SELECT name FROM fastener_name WHERE name = 'ISO 4017 M8'"),
              "ISO 4017 M8");
    EXPECT_EQ(QueryServer(conn.get(),
                          "INSERT INTO fastener_name(name, name_key) VALUES('x', 'iso 4017 m8')")
                  .rfind("ERROR", 0),
              0u);
}

TEST_P(DatabaseServiceOn, FastenerNamesAreUniqueWithoutRegardToCase) {
    IDatabaseCollector* db = ZEBDataHelper::getInstance();
    ASSERT_NE(db, nullptr);

    EXPECT_EQ(db->AddFastenerName(L"Hex Bolt M7"), ZebDbOk);
    EXPECT_EQ(db->AddFastenerName(L"HEX BOLT m7"), ZebDbExists);
    EXPECT_EQ(db->AddFastenerName(L"iso 4017 m8"), ZebDbExists);
    EXPECT_EQ(db->AddFastenerName(L""), ZebDbFailed);
    // letters beyond ASCII fold too, whatever the user's locale
    EXPECT_EQ(db->AddFastenerName(L"Schraube Ä1"), ZebDbOk);
    EXPECT_EQ(db->AddFastenerName(L"SCHRAUBE ä1"), ZebDbExists);
    std::list<std::wstring> names = FastenerNames(*db);
    EXPECT_EQ(std::count(names.begin(), names.end(), L"Hex Bolt M7"), 1);  // stored as given
    EXPECT_FALSE(Contains(names, L"HEX BOLT m7"));
    EXPECT_EQ(names.back(), L"Schraube Ä1");  // in the order of adding

    // rename: found without regard to case; a case change alone is a rename
    EXPECT_EQ(db->RenameFastenerName(L"HEX BOLT M7", L"HEX BOLT M7"), ZebDbOk);
    EXPECT_EQ(db->RenameFastenerName(L"hex bolt m7", L"Stud M7"), ZebDbOk);
    EXPECT_EQ(db->RenameFastenerName(L"Stud M7", L"ISO 4017 m8"), ZebDbFailed);  // taken
    EXPECT_EQ(db->RenameFastenerName(L"Nothing", L"Other"), ZebDbFailed);
    EXPECT_EQ(db->RenameFastenerName(L"Stud M7", L""), ZebDbFailed);
    names = FastenerNames(*db);
    EXPECT_TRUE(Contains(names, L"Stud M7"));
    EXPECT_FALSE(Contains(names, L"HEX BOLT M7"));
    EXPECT_TRUE(Contains(names, L"ISO 4017 M8"));

    // delete: the dialogs pass the upper-case form
    EXPECT_EQ(db->DeleteFastenerName(L"STUD M7"), ZebDbOk);
    EXPECT_EQ(db->DeleteFastenerName(L"STUD M7"), ZebDbFailed);
    EXPECT_FALSE(Contains(FastenerNames(*db), L"Stud M7"));
}

TEST_P(DatabaseServiceOn, MaterialsBelongToGroupsAndUndoRestoresTheEarlierState) {
    IDatabaseCollector* db = ZEBDataHelper::getInstance();
    ASSERT_NE(db, nullptr);
    const ZebMaterialPairList before = Pairs(*db);
    const std::list<std::wstring> groupsBefore = Groups(*db);

    EXPECT_EQ(db->AddMaterial(L"Titanium alloys", L"Ti-6Al-4V", 0), ZebDbOk);  // new group
    EXPECT_EQ(db->AddMaterial(L"titanium ALLOYS", L"ti-6al-4v", 0), ZebDbExists);
    EXPECT_EQ(db->AddMaterial(L"steels", L"16MnCr5", 0), ZebDbOk);  // existing group, its case
    EXPECT_EQ(db->AddMaterial(L"Plastics", L"C45", 0), ZebDbOk);    // same name, other group
    EXPECT_EQ(db->AddMaterial(L"", L"X", 0), ZebDbFailed);
    EXPECT_EQ(db->AddMaterial(L"Steels", L"", 0), ZebDbFailed);
    EXPECT_NE(db->MaterialExistsInGroup(L"TI-6AL-4V", L"titanium alloys", 0), 0);
    EXPECT_EQ(db->MaterialExistsInGroup(L"Ti-6Al-4V", L"Steels", 0), 0);
    EXPECT_TRUE(Contains(Groups(*db), L"Titanium alloys"));
    std::wstring steels;
    EXPECT_EQ(db->GetGroupMaterials(L"Steels", steels, 0), ZebDbOk);
    EXPECT_NE(steels.find(L"16MnCr5"), std::wstring::npos);
    const ZebMaterialPairList added = {
        {L"Titanium alloys", L"Ti-6Al-4V"}, {L"steels", L"16MnCr5"}, {L"Plastics", L"C45"}};

    // deleting the last material of a group takes the group with it
    EXPECT_EQ(db->DeleteMaterial(L"BRASS", L"cuzn37", 0), ZebDbOk);
    EXPECT_EQ(db->DeleteMaterial(L"Brass", L"CuZn39Pb3", 0), ZebDbOk);
    EXPECT_EQ(db->DeleteMaterial(L"Brass", L"CuZn39Pb3", 0), ZebDbFailed);
    EXPECT_EQ(db->DeleteMaterial(L"Steels", L"Unobtainium", 0), ZebDbFailed);
    EXPECT_EQ(db->DeleteMaterial(L"Steels", L"S235JR", 0), ZebDbOk);
    EXPECT_FALSE(Contains(Groups(*db), L"Brass"));
    std::wstring brass = L"old";
    EXPECT_EQ(db->GetGroupMaterials(L"Brass", brass, 0), ZebDbOk);
    EXPECT_EQ(brass, L"");
    // the dialog takes the letter case from the pairs before deleting
    const ZebMaterialPairList deleted = {
        {L"Brass", L"CuZn37"}, {L"Brass", L"CuZn39Pb3"}, {L"Steels", L"S235JR"}};

    EXPECT_EQ(db->UndoAddedMaterials(added, 0), ZebDbOk);
    EXPECT_EQ(db->UndoDeletedMaterials(deleted, 0), ZebDbOk);
    EXPECT_EQ(Pairs(*db), before);
    EXPECT_EQ(Groups(*db), groupsBefore);
    // undoing twice changes nothing more
    EXPECT_EQ(db->UndoDeletedMaterials(deleted, 0), ZebDbOk);
    EXPECT_EQ(Pairs(*db), before);

    // Both lists at once, as the editor's Cancel takes them back.
    for (const auto& [group, material] : added)
        EXPECT_EQ(db->AddMaterial(group, material, 0), ZebDbOk);
    for (const auto& [group, material] : deleted)
        EXPECT_EQ(db->DeleteMaterial(group, material, 0), ZebDbOk);
    EXPECT_NE(Pairs(*db), before);
    EXPECT_EQ(db->UndoMaterialChanges(added, deleted, 0), ZebDbOk);
    EXPECT_EQ(Pairs(*db), before);
    EXPECT_EQ(Groups(*db), groupsBefore);
}

TEST_P(DatabaseServiceOn, MaterialInUseByHardwareRecordsAsksForANotice) {
    IDatabaseCollector* db = ZEBDataHelper::getInstance();
    ASSERT_NE(db, nullptr);
    EXPECT_EQ(db->CheckMaterialUse(L"c45", L"Steels", 0), 0);  // starter screws
    EXPECT_EQ(db->CheckMaterialUse(L"PEEK", L"Plastics", 0), 1);
    EXPECT_EQ(db->CheckMaterialUse(L"", L"steels", 0), 0);  // the whole group
    EXPECT_EQ(db->CheckMaterialUse(L"", L"Plastics", 0), 1);

    ZebHardwareRecord washer{0, L"Insulating washer 8", L"Washer", L"", L"", 0.0, L"peek"};
    EXPECT_EQ(db->AddHardwareRecord(washer), ZebDbOk);
    EXPECT_EQ(db->CheckMaterialUse(L"PEEK", L"Plastics", 0), 0);
    EXPECT_EQ(db->CheckMaterialUse(L"", L"Plastics", 0), 0);
}

TEST_P(DatabaseServiceOn, HardwareRecordsAddUpdateAndDelete) {
    IDatabaseCollector* db = ZEBDataHelper::getInstance();
    ASSERT_NE(db, nullptr);
    ZebHardwareRecord stud{0, L"Stud M8x60", L"Stud", L"DIN 976", L"M8x1.25", 60.0, L"C45"};
    EXPECT_EQ(db->AddHardwareRecord(stud), ZebDbOk);
    EXPECT_GT(stud.id, 0);
    ZebHardwareRecord copy = stud;
    copy.designation = L"STUD m8X60";
    EXPECT_EQ(db->AddHardwareRecord(copy), ZebDbExists);
    ZebHardwareRecord unnamed{};
    EXPECT_EQ(db->AddHardwareRecord(unnamed), ZebDbFailed);

    std::list<ZebHardwareRecord> list;
    EXPECT_EQ(db->GetHardwareList(list), ZebDbOk);
    EXPECT_EQ(std::count(list.begin(), list.end(), stud), 1);

    stud.length = 70.0;
    stud.designation = L"Stud M8x70";
    EXPECT_EQ(db->UpdateHardwareRecord(stud), ZebDbOk);
    ZebHardwareRecord clash = stud;
    clash.designation = L"iso 4017 m8x20";
    EXPECT_EQ(db->UpdateHardwareRecord(clash), ZebDbExists);
    ZebHardwareRecord missing = stud;
    missing.id = 999999;
    EXPECT_EQ(db->UpdateHardwareRecord(missing), ZebDbFailed);
    EXPECT_EQ(db->GetHardwareList(list), ZebDbOk);
    EXPECT_EQ(std::count(list.begin(), list.end(), stud), 1);

    EXPECT_EQ(db->DeleteHardwareRecord(stud.id), ZebDbOk);
    EXPECT_EQ(db->DeleteHardwareRecord(stud.id), ZebDbFailed);
    EXPECT_EQ(db->GetHardwareList(list), ZebDbOk);
    EXPECT_EQ(std::count(list.begin(), list.end(), stud), 0);
}

TEST_P(DatabaseServiceOn, IgnoreListAndAttributeDataRoundTrip) {
    IDatabaseCollector* db = ZEBDataHelper::getInstance();
    ASSERT_NE(db, nullptr);
    std::list<std::wstring> read{L"left over"};
    EXPECT_EQ(db->GetInterferenceIgnoreList(read), ZebDbOk);
    EXPECT_TRUE(read.empty());

    const std::list<std::wstring> saved{L"Zahnrad", L"bracket", L"Welle Ø20", L"bracket", L""};
    EXPECT_EQ(db->SaveInterferenceIgnoreList(saved), ZebDbOk);
    EXPECT_EQ(db->GetInterferenceIgnoreList(read), ZebDbOk);
    EXPECT_EQ(read, saved);
    const std::list<std::wstring> shorter{L"only"};
    EXPECT_EQ(db->SaveInterferenceIgnoreList(shorter), ZebDbOk);
    EXPECT_EQ(db->GetInterferenceIgnoreList(read), ZebDbOk);
    EXPECT_EQ(read, shorter);
    EXPECT_EQ(db->SaveInterferenceIgnoreList({}), ZebDbOk);
    EXPECT_EQ(db->GetInterferenceIgnoreList(read), ZebDbOk);
    EXPECT_TRUE(read.empty());

    EXPECT_EQ(db->SetFastenerAttribute(L"Special M7", L"M7x1"), ZebDbOk);
    EXPECT_EQ(db->SetFastenerAttribute(L"ISO 4017 m8", L"M8x1"), ZebDbOk);  // fine thread instead
    EXPECT_NE(db->SetFastenerAttribute(L"", L"M1"), ZebDbOk);
    std::map<std::wstring, std::wstring> data;
    EXPECT_EQ(db->GetAttributeData(kFastenerThreadAttributeSet, data), ZebDbOk);
    EXPECT_EQ(data[L"Special M7"], L"M7x1");
    EXPECT_EQ(data.count(L"ISO 4017 M8"), 0u);  // one entry, under the latest spelling
    EXPECT_EQ(data[L"ISO 4017 m8"], L"M8x1");
    EXPECT_EQ(db->GetAttributeData(L"NoSuchSet", data), ZebDbOk);
    EXPECT_TRUE(data.empty());
}

TEST(DatabaseService, EachFolderHasItsOwnDatabase) {
    ScopedDatabaseFolder first;
    IDatabaseCollector* a = ZEBDataHelper::getInstance();
    ASSERT_NE(a, nullptr);
    EXPECT_EQ(a->AddFastenerName(L"Only in the first"), ZebDbOk);
    {
        ScopedDatabaseFolder second;
        IDatabaseCollector* b = ZEBDataHelper::getInstance();
        ASSERT_NE(b, nullptr);
        EXPECT_NE(a, b);
        EXPECT_FALSE(Contains(FastenerNames(*b), L"Only in the first"));
        EXPECT_EQ(b->GetDatabasePath(), second.File().wstring());
    }
    ScopedDatabaseFolder::Point(first.Folder());
    IDatabaseCollector* again = ZEBDataHelper::getInstance();
    ASSERT_EQ(again, a);
    EXPECT_TRUE(Contains(FastenerNames(*again), L"Only in the first"));

    // a file removed behind the service's back is created anew
    fs::remove(first.File());
    IDatabaseCollector* fresh = ZEBDataHelper::getInstance();
    ASSERT_NE(fresh, nullptr);
    EXPECT_FALSE(Contains(FastenerNames(*fresh), L"Only in the first"));
    EXPECT_TRUE(Contains(FastenerNames(*fresh), L"ISO 4017 M8"));
}

TEST(DatabaseService, DataFolderIsTheFallbackAndIsCreatedWithItsParents) {
    ScopedDatabaseFolder home;
    ::unsetenv("VANTOR_DATABASE_DIR");
    ::setenv("XDG_DATA_HOME", (home.Folder() / "deep" / "data").c_str(), 1);
    EXPECT_EQ(ZEBDataHelper::GetDatabaseFolder(), (home.Folder() / "deep/data/vantor").wstring());
    EXPECT_NE(ZEBDataHelper::getInstance(), nullptr);
    EXPECT_TRUE(fs::exists(home.Folder() / "deep/data/vantor/vantor.sqlite"));
    ::unsetenv("XDG_DATA_HOME");
    const char* userHome = std::getenv("HOME");
    if (userHome) {
        EXPECT_EQ(ZEBDataHelper::GetDatabaseFolder(),
                  (fs::path(userHome) / ".local/share/vantor").wstring());
    }
    ::setenv("VANTOR_DATABASE_DIR", (home.Folder().string() + "//").c_str(), 1);
    EXPECT_EQ(ZEBDataHelper::GetDatabaseFolder(), home.Folder().wstring());
}

TEST(DatabaseService, UnusableFolderOrUnsoundFileGivesNoServiceAndStaysUntouched) {
    ScopedDatabaseFolder folder;
    // a folder below a plain file can never be made
    std::ofstream(folder.Folder() / "plain") << "x";
    ScopedDatabaseFolder::Point(folder.Folder() / "plain" / "db");
    EXPECT_EQ(ZEBDataHelper::getInstance(), nullptr);

    const auto expectRefused = [](const fs::path& dir, const char* what) {
        const std::string bytes = FileBytes(dir / "vantor.sqlite");
        ScopedDatabaseFolder::Point(dir);
        EXPECT_EQ(ZEBDataHelper::getInstance(), nullptr) << what;
        EXPECT_EQ(FileBytes(dir / "vantor.sqlite"), bytes) << what;
        EXPECT_FALSE(fs::exists(dir / "vantor.sqlite-journal")) << what;
    };

    const fs::path text = folder.Folder() / "text";
    fs::create_directory(text);
    std::ofstream(text / "vantor.sqlite") << std::string(3000, 'n') << "not a database";
    expectRefused(text, "text file");

    // a sound database of ours, then damaged in its second page
    const fs::path sound = folder.Folder() / "sound";
    ScopedDatabaseFolder::Point(sound);
    ASSERT_NE(ZEBDataHelper::getInstance(), nullptr);
    const fs::path damaged = folder.Folder() / "damaged";
    fs::create_directory(damaged);
    std::string bytes = FileBytes(sound / "vantor.sqlite");
    ASSERT_GT(bytes.size(), 3 * 4096u);
    std::fill(bytes.begin() + 4096, bytes.begin() + 3 * 4096, '\x5a');
    std::ofstream(damaged / "vantor.sqlite", std::ios::binary) << bytes;
    expectRefused(damaged, "damaged pages");

    // someone else's database, and one from a newer version of ours
    const fs::path foreign = folder.Folder() / "foreign";
    fs::create_directory(foreign);
    sqlite3* db = nullptr;
    ASSERT_EQ(sqlite3_open((foreign / "vantor.sqlite").c_str(), &db), SQLITE_OK);
    sqlite3_exec(db, "CREATE TABLE invoices(id INTEGER)", nullptr, nullptr, nullptr);
    sqlite3_close(db);
    expectRefused(foreign, "foreign database");

    const fs::path newer = folder.Folder() / "newer";
    fs::create_directory(newer);
    fs::copy_file(sound / "vantor.sqlite", newer / "vantor.sqlite");
    ASSERT_EQ(sqlite3_open((newer / "vantor.sqlite").c_str(), &db), SQLITE_OK);
    sqlite3_exec(db, "PRAGMA user_version = 99", nullptr, nullptr, nullptr);
    sqlite3_close(db);
    expectRefused(newer, "newer schema");
}

TEST(DatabaseService, PlantedLinksAreNotFollowed) {
    ScopedDatabaseFolder folder;
    const fs::path elsewhere = folder.Folder() / "elsewhere";
    fs::create_directory(elsewhere);
    ScopedDatabaseFolder::Point(elsewhere);
    ASSERT_NE(ZEBDataHelper::getInstance(), nullptr);
    const fs::path sound = elsewhere / "vantor.sqlite";
    const std::string soundBytes = FileBytes(sound);
    const fs::path victim = folder.Folder() / "victim.txt";
    std::ofstream(victim) << "someone's file";

    const auto expectRefused = [&](const fs::path& dir, const char* what) {
        ScopedDatabaseFolder::Point(dir);
        testing::internal::CaptureStderr();
        EXPECT_EQ(ZEBDataHelper::getInstance(), nullptr) << what;
        const std::string message = testing::internal::GetCapturedStderr();
        EXPECT_NE(message.find((dir / "vantor.sqlite").string() + " cannot be used"),
                  std::string::npos)
            << message;
        EXPECT_NE(message.find("symbolic link"), std::string::npos) << message;
        EXPECT_EQ(FileBytes(victim), "someone's file") << what;
        EXPECT_EQ(FileBytes(sound), soundBytes) << what;
    };

    // a link to a sound database, to someone's file, and to a name where a new file would be made
    const fs::path toDatabase = folder.Folder() / "to-database";
    fs::create_directory(toDatabase);
    fs::create_symlink(sound, toDatabase / "vantor.sqlite");
    expectRefused(toDatabase, "link to a database");
    const fs::path toFile = folder.Folder() / "to-file";
    fs::create_directory(toFile);
    fs::create_symlink(victim, toFile / "vantor.sqlite");
    expectRefused(toFile, "link to a file");
    const fs::path dangling = folder.Folder() / "dangling";
    fs::create_directory(dangling);
    fs::create_symlink(folder.Folder() / "made-here", dangling / "vantor.sqlite");
    expectRefused(dangling, "link to nothing");
    EXPECT_FALSE(fs::exists(folder.Folder() / "made-here"));
    EXPECT_TRUE(fs::is_symlink(dangling / "vantor.sqlite"));

    // a link where the journal goes would have a transaction written into someone's file
    const fs::path journal = folder.Folder() / "journal";
    fs::create_directory(journal);
    fs::copy_file(sound, journal / "vantor.sqlite");
    fs::create_symlink(victim, journal / "vantor.sqlite-journal");
    expectRefused(journal, "link as journal");
    EXPECT_TRUE(fs::is_symlink(journal / "vantor.sqlite-journal"));

    // a database in use whose journal is planted as a link between two changes
    ScopedDatabaseFolder::Point(elsewhere);
    IDatabaseCollector* inUse = ZEBDataHelper::getInstance();
    ASSERT_NE(inUse, nullptr);
    ASSERT_EQ(inUse->AddFastenerName(L"M8X40-ISO4017-A"), ZebDbOk);
    const fs::path plantedJournal = elsewhere / "vantor.sqlite-journal";
    fs::create_symlink(victim, plantedJournal);
    testing::internal::CaptureStderr();
    EXPECT_EQ(inUse->AddFastenerName(L"M8X40-ISO4017-B"), ZebDbFailed);
    const std::string planted = testing::internal::GetCapturedStderr();
    EXPECT_NE(planted.find("symbolic link"), std::string::npos) << planted;
    EXPECT_EQ(FileBytes(victim), "someone's file");
    EXPECT_TRUE(fs::is_symlink(plantedJournal));
    fs::remove(plantedJournal);
    EXPECT_EQ(inUse->AddFastenerName(L"M8X40-ISO4017-B"), ZebDbOk);

    // a database in use replaced by a link is refused when next fetched
    ASSERT_NE(ZEBDataHelper::getInstance(), nullptr);
    const fs::path moved = folder.Folder() / "moved.sqlite";
    fs::rename(sound, moved);
    fs::create_symlink(moved, sound);
    EXPECT_EQ(ZEBDataHelper::getInstance(), nullptr);
}

namespace {

// What a child reports through its pipe about the names both children add.
struct SharedOutcome {
    int added = 0;
    int existed = 0;
};

// Runs `adds` names "P<tag>-<i>" in a child process, each its own transaction, fetching the
// service afresh each time as the dialogs do. With `shared` names, every fifth addition is also
// "Shared-<k>", which the other child adds too; what that gave goes back through `report`.
pid_t AddInChild(int tag, int adds, int shared = 0, int report = -1) {
    const pid_t child = ::fork();
    if (child != 0) return child;
    int failures = 0;
    SharedOutcome outcome;
    for (int i = 0, k = 0; i < adds; ++i) {
        IDatabaseCollector* db = ZEBDataHelper::getInstance();
        const std::wstring name = L"P" + std::to_wstring(tag) + L"-" + std::to_wstring(i);
        if (!db || db->AddFastenerName(name) != ZebDbOk) ++failures;
        if (k < shared && i % 5 == 0) {
            const int32_t result =
                db ? db->AddFastenerName(L"Shared-" + std::to_wstring(k++)) : ZebDbFailed;
            if (result == ZebDbOk)
                ++outcome.added;
            else if (result == ZebDbExists)
                ++outcome.existed;
            else
                ++failures;
        }
    }
    if (report >= 0 && ::write(report, &outcome, sizeof outcome) != sizeof outcome) ++failures;
    ::_exit(failures > 255 ? 255 : failures);
}

void ExpectCleanExit(pid_t child) {
    int status = 0;
    ASSERT_EQ(::waitpid(child, &status, 0), child);
    ASSERT_TRUE(WIFEXITED(status));
    EXPECT_EQ(WEXITSTATUS(status), 0) << "failed additions";
}

SharedOutcome ReadOutcome(int fd) {
    SharedOutcome outcome;
    EXPECT_EQ(::read(fd, &outcome, sizeof outcome), static_cast<ssize_t>(sizeof outcome));
    ::close(fd);
    return outcome;
}

}  // namespace

TEST_P(DatabaseServiceOn, TwoProcessesAddingAtOnceLoseNoName) {
    size_t starter = 0;
    {
        ScopedEnv sqliteOnly("VANTOR_DATABASE_URL", nullptr);
        ScopedDatabaseFolder other;
        starter = FastenerNames(*ZEBDataHelper::getInstance()).size();
    }
    ScopedDatabaseFolder::Point(folder_.Folder());
    // Both start on a new database: one creates the catalogue, the other waits for it. Both add
    // the same 100 names as well: each of them is stored once and the other child hears "already
    // exists" for it exactly once.
    constexpr int kPerProcess = 500;
    constexpr int kShared = 100;
    int pipes[2][2];
    ASSERT_EQ(::pipe(pipes[0]), 0);
    ASSERT_EQ(::pipe(pipes[1]), 0);
    const pid_t first = AddInChild(0, kPerProcess, kShared, pipes[0][1]);
    const pid_t second = AddInChild(1, kPerProcess, kShared, pipes[1][1]);
    ::close(pipes[0][1]);
    ::close(pipes[1][1]);
    ASSERT_GT(first, 0);
    ASSERT_GT(second, 0);
    const SharedOutcome a = ReadOutcome(pipes[0][0]);
    const SharedOutcome b = ReadOutcome(pipes[1][0]);
    ExpectCleanExit(first);
    ExpectCleanExit(second);
    EXPECT_EQ(a.added + b.added, kShared);
    EXPECT_EQ(a.existed + b.existed, kShared);

    IDatabaseCollector* db = ZEBDataHelper::getInstance();
    ASSERT_NE(db, nullptr);
    std::list<std::wstring> names = FastenerNames(*db);
    EXPECT_EQ(names.size(), starter + 2 * kPerProcess + kShared);
    const std::set<std::wstring> unique(names.begin(), names.end());
    EXPECT_EQ(unique.size(), names.size());
    for (int c = 0; c < 2; ++c)
        for (int i = 0; i < kPerProcess; ++i)
            EXPECT_EQ(unique.count(L"P" + std::to_wstring(c) + L"-" + std::to_wstring(i)), 1u);
    for (int k = 0; k < kShared; ++k) EXPECT_EQ(unique.count(L"Shared-" + std::to_wstring(k)), 1u);

    // the connection this process keeps sees what another process writes afterwards, and the
    // child's own connection left this one working
    ExpectCleanExit(AddInChild(2, 1));
    names = FastenerNames(*ZEBDataHelper::getInstance());
    EXPECT_TRUE(Contains(names, L"P2-0"));
}

TEST_P(ServerDatabase, LostSessionFailsOnceAndTheNextOperationConnectsAgain) {
    IDatabaseCollector* db = ZEBDataHelper::getInstance();
    ASSERT_NE(db, nullptr);
    ASSERT_EQ(db->AddFastenerName(L"Before the outage"), ZebDbOk);

    // The server ends the session, as on a restart or a dropped network.
    const PgConnection admin = server_->ConnectMaintenance();
    ASSERT_EQ(QueryServer(admin.get(),
                          "SELECT count(*) FROM (SELECT pg_terminate_backend(pid, 10000) AS ended"
                          " FROM pg_stat_activity WHERE datname = '" +
                              server_->Name() + "') s WHERE ended"),
              "1");
    testing::internal::CaptureStderr();
    EXPECT_EQ(db->AddFastenerName(L"During the outage"), ZebDbFailed);
    const std::string message = testing::internal::GetCapturedStderr();
    EXPECT_NE(message.find("AddFastenerName"), std::string::npos) << message;
    EXPECT_NE(message.find("terminat"), std::string::npos) << message;  // the server's own words

    // The same service connects again; the failed change stored nothing.
    EXPECT_EQ(ZEBDataHelper::getInstance(), db);
    EXPECT_EQ(db->AddFastenerName(L"During the outage"), ZebDbOk);
    const std::list<std::wstring> names = FastenerNames(*db);
    EXPECT_TRUE(Contains(names, L"Before the outage"));
    EXPECT_EQ(std::count(names.begin(), names.end(), L"During the outage"), 1);
    // one session again, not one per attempt
    EXPECT_EQ(QueryServer(admin.get(), "SELECT count(*) FROM pg_stat_activity WHERE datname = '" +
                                           server_->Name() + "' AND application_name = 'vantor'"),
              "1");
}

// A server of the test's own, stopped and started again under a service in use: while it is
// down every operation fails at once, and the same service works again once it is back.
TEST_P(ServerDatabase, StoppedServerFailsCleanlyAndServesAgainOnceBack) {
    std::string pattern = (std::filesystem::temp_directory_path() / "vantor_pg_XXXXXX").string();
    ASSERT_NE(::mkdtemp(pattern.data()), nullptr);
    const std::string dir = pattern;
    const auto server = [&dir](const char* action) {
        const std::string command = std::string(VANTOR_SOURCE_DIR) + "/scripts/pg_server " +
                                    action + " '" + dir + "' >'" + dir + ".log' 2>&1";
        return std::system(command.c_str()) == 0;
    };
    struct Cleanup {
        std::function<void()> run;
        ~Cleanup() { run(); }
    } cleanup{[&] {
        server("stop");
        std::error_code ignored;
        std::filesystem::remove_all(dir, ignored);
        std::filesystem::remove(dir + ".log", ignored);
    }};
    ASSERT_TRUE(server("start")) << "the second server did not start; see " << dir << ".log";
    ::setenv("VANTOR_DATABASE_URL",
             ("postgresql://postgres@/postgres?host=" + dir + "&port=5432").c_str(), 1);
    IDatabaseCollector* db = ZEBDataHelper::getInstance();
    ASSERT_NE(db, nullptr);
    ASSERT_EQ(db->AddFastenerName(L"Before the stop"), ZebDbOk);

    ASSERT_TRUE(server("stop"));
    testing::internal::CaptureStderr();
    EXPECT_EQ(db->AddFastenerName(L"While stopped"), ZebDbFailed);
    std::list<std::wstring> names;
    EXPECT_EQ(db->GetFastenerNames(names), ZebDbFailed);  // still down: no connection to be had
    const std::string message = testing::internal::GetCapturedStderr();
    EXPECT_NE(message.find("GetFastenerNames"), std::string::npos) << message;

    ASSERT_TRUE(server("start"));
    EXPECT_EQ(ZEBDataHelper::getInstance(), db);
    EXPECT_EQ(db->AddFastenerName(L"While stopped"), ZebDbOk);
    names = FastenerNames(*db);
    EXPECT_TRUE(Contains(names, L"Before the stop"));
    EXPECT_EQ(std::count(names.begin(), names.end(), L"While stopped"), 1);
}

TEST_P(ServerDatabase, UnreachableOrForeignDatabaseGivesNoServiceWithTheServersMessage) {
    const auto expectNoService = [](const std::string& url, const char* expected) {
        ::setenv("VANTOR_DATABASE_URL", url.c_str(), 1);
        testing::internal::CaptureStderr();
        EXPECT_EQ(ZEBDataHelper::getInstance(), nullptr) << url;
        const std::string message = testing::internal::GetCapturedStderr();
        EXPECT_NE(message.find(expected), std::string::npos) << message;
        EXPECT_EQ(message.find("s3cret"), std::string::npos) << message;
    };
    expectNoService(WithDatabaseName(server_->Url(), "no_such_database") + " password=s3cret",
                    "database \"no_such_database\" does not exist");
    expectNoService("host=" + folder_.Folder().string() + " dbname=x password=s3cret",
                    "No such file or directory");
    expectNoService("postgresql://nobody:s3cret@/x?host=/nonexistent&port=1", "No such file");

    // Another program's tables: left alone, no schema of ours beside them.
    const PgConnection conn = server_->Connect();
    ASSERT_EQ(QueryServer(conn.get(), "CREATE TABLE invoices(id INTEGER)"), "");
    expectNoService(server_->Url(), "another program's tables");
    EXPECT_EQ(QueryServer(conn.get(), "SELECT to_regclass('meta') IS NULL"), "t");
    ASSERT_EQ(QueryServer(conn.get(), "DROP TABLE invoices"), "");

    // Once the database is ours the same setting gives the service; the password stays out of
    // the path shown, in either form of the setting.
    ::setenv("VANTOR_DATABASE_URL", (server_->Url() + " password='s3cret'").c_str(), 1);
    IDatabaseCollector* db = ZEBDataHelper::getInstance();
    ASSERT_NE(db, nullptr);
    EXPECT_EQ(db->GetDatabasePath(), Wide(server_->Url()));
    const std::string host = ConninfoValue(server_->Url(), "host");
    const std::string port = ConninfoValue(server_->Url(), "port");
    const std::string uri = "postgresql://" + ConninfoValue(server_->Url(), "user") + ":s3cret@/" +
                            server_->Name() + "?host=" + host + "&port=" + port;
    ::setenv("VANTOR_DATABASE_URL", (uri + "&password=s3cret").c_str(), 1);
    db = ZEBDataHelper::getInstance();
    ASSERT_NE(db, nullptr);
    EXPECT_EQ(db->GetDatabasePath(),
              Wide("postgresql://" + ConninfoValue(server_->Url(), "user") + "@/" +
                   server_->Name() + "?host=" + host + "&port=" + port));

    // A database a newer version wrote is refused, and stays as it is.
    ASSERT_EQ(QueryServer(conn.get(), "UPDATE meta SET value = '99' WHERE key = 'schema_version'"),
              "");
    expectNoService(server_->Url() + " application_name=newer", "newer version");
    EXPECT_EQ(QueryServer(conn.get(), "SELECT value FROM meta WHERE key = 'schema_version'"), "99");
}

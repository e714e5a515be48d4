#include "sqlite_database.h"

#include <sys/stat.h>

#include <cstdio>

#include "framework/case_fold.h"
#include "framework/text_convert.h"
#include "schema.h"
#include "sqlite_statement.h"

namespace zeb_db {
namespace {

// Long enough for another engineer's change to finish on a slow network folder.
constexpr int kBusyTimeoutMs = 30000;

void Report(const std::wstring& path, const char* operation, const char* message) {
    std::fprintf(stderr, "vantor: database %s: %s: %s\n", ToUtf8(path).c_str(), operation, message);
}

// The integrity check reads the whole file but never writes; a file that is not a database
// fails already when the check is prepared.
void CheckIntegrity(sqlite3* db) {
    Statement check(db, "PRAGMA quick_check");
    if (!check.Step()) throw DbError("the integrity check gave no answer");
    const std::wstring verdict = check.Text(0);
    if (verdict != L"ok") throw DbError("the database is damaged: " + ToUtf8(verdict));
}

int64_t GroupId(sqlite3* db, const std::wstring& group) {
    Statement find(db, "SELECT id FROM material_group WHERE name_key = ?1");
    find.Bind(1, ZebFoldCase(group));
    return find.Step() ? find.Int(0) : 0;
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

bool Exists(sqlite3* db, const char* sql, const std::wstring& key) {
    Statement find(db, sql);
    find.Bind(1, key);
    return find.Step();
}

}  // namespace

std::unique_ptr<SqliteDatabase> SqliteDatabase::Open(const std::wstring& path, std::string& error) {
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
    try {
        CheckIntegrity(db);
        // The rollback journal, not WAL: WAL needs shared memory, which network folders do
        // not give reliably.
        Execute(db, "PRAGMA journal_mode = DELETE; PRAGMA foreign_keys = ON");
        Execute(db, "BEGIN IMMEDIATE");
        try {
            UpgradeSchema(db);
            Execute(db, "COMMIT");
        } catch (const DbError&) {
            sqlite3_exec(db, "ROLLBACK", nullptr, nullptr, nullptr);
            throw;
        }
    } catch (const DbError& e) {
        error = e.what();
        sqlite3_close(db);
        return nullptr;
    }
    return std::unique_ptr<SqliteDatabase>(new SqliteDatabase(db, path));
}

SqliteDatabase::~SqliteDatabase() { sqlite3_close(db_); }

int32_t SqliteDatabase::Transaction(const char* operation, bool write,
                                    const std::function<int32_t()>& body) {
    if (const std::string problem = JournalProblem(ToUtf8(path_)); !problem.empty()) {
        Report(path_, operation, problem.c_str());
        return ZebDbFailed;
    }
    try {
        Execute(db_, write ? "BEGIN IMMEDIATE" : "BEGIN");
    } catch (const DbError& e) {
        Report(path_, operation, e.what());
        return ZebDbFailed;
    }
    try {
        const int32_t result = body();
        Execute(db_, (write && result != ZebDbOk) ? "ROLLBACK" : "COMMIT");
        return result;
    } catch (const DbError& e) {
        sqlite3_exec(db_, "ROLLBACK", nullptr, nullptr, nullptr);
        Report(path_, operation, e.what());
        return ZebDbFailed;
    }
}

ZebDbResult SqliteDatabase::Read(const char* operation, const std::function<int32_t()>& body) {
    return static_cast<ZebDbResult>(Transaction(operation, false, body));
}

ZebDbResult SqliteDatabase::Write(const char* operation, const std::function<int32_t()>& body) {
    return static_cast<ZebDbResult>(Transaction(operation, true, body));
}

ZebDbResult SqliteDatabase::ReadTexts(const char* operation, const char* sql,
                                      std::list<std::wstring>& texts) {
    std::list<std::wstring> read;
    const ZebDbResult result = Read(operation, [&] {
        Statement select(db_, sql);
        while (select.Step()) read.push_back(select.Text(0));
        return ZebDbOk;
    });
    if (result == ZebDbOk) texts = std::move(read);
    return result;
}

// ---- materials ----

ZebDbResult SqliteDatabase::InsertMaterial(const std::wstring& group,
                                           const std::wstring& material) {
    int64_t groupId = GroupId(db_, group);
    if (groupId == 0) {
        Statement insert(db_, "INSERT INTO material_group(name, name_key) VALUES(?1, ?2)");
        insert.Bind(1, group).Bind(2, ZebFoldCase(group)).Run();
        groupId = sqlite3_last_insert_rowid(db_);
    }
    Statement insert(db_,
                     "INSERT INTO material(group_id, name, name_key) VALUES(?1, ?2, ?3)"
                     " ON CONFLICT(group_id, name_key) DO NOTHING");
    insert.Bind(1, groupId).Bind(2, material).Bind(3, ZebFoldCase(material)).Run();
    return sqlite3_changes(db_) == 0 ? ZebDbExists : ZebDbOk;
}

bool SqliteDatabase::RemoveMaterial(const std::wstring& group, const std::wstring& material) {
    const int64_t groupId = GroupId(db_, group);
    if (groupId == 0) return false;
    Statement remove(db_, "DELETE FROM material WHERE group_id = ?1 AND name_key = ?2");
    remove.Bind(1, groupId).Bind(2, ZebFoldCase(material)).Run();
    if (sqlite3_changes(db_) == 0) return false;
    Statement dropEmpty(db_,
                        "DELETE FROM material_group WHERE id = ?1"
                        " AND NOT EXISTS (SELECT 1 FROM material WHERE group_id = ?1)");
    dropEmpty.Bind(1, groupId).Run();
    return true;
}

int32_t SqliteDatabase::MaterialExistsInGroup(const std::wstring& material,
                                              const std::wstring& group, int32_t) {
    const ZebDbResult result = Read("MaterialExistsInGroup", [&] {
        Statement find(db_,
                       "SELECT 1 FROM material m JOIN material_group g ON g.id = m.group_id"
                       " WHERE g.name_key = ?1 AND m.name_key = ?2");
        find.Bind(1, ZebFoldCase(group)).Bind(2, ZebFoldCase(material));
        return find.Step() ? 1 : 0;
    });
    // A failed read must not pass for "exists".
    return result == 1 ? 1 : 0;
}

ZebDbResult SqliteDatabase::GetMaterialPairs(ZebMaterialPairList& pairs, int32_t) {
    ZebMaterialPairList read;
    const ZebDbResult result = Read("GetMaterialPairs", [&] {
        Statement select(
            db_,
            "SELECT g.name, m.name FROM material m JOIN material_group g ON g.id = m.group_id"
            " ORDER BY g.name_key, m.name_key");
        while (select.Step()) read.emplace_back(select.Text(0), select.Text(1));
        return ZebDbOk;
    });
    if (result == ZebDbOk) pairs = std::move(read);
    return result;
}

ZebDbResult SqliteDatabase::AddMaterial(const std::wstring& group, const std::wstring& material,
                                        int32_t) {
    if (group.empty() || material.empty()) return ZebDbFailed;
    return Write("AddMaterial", [&] { return InsertMaterial(group, material); });
}

ZebDbResult SqliteDatabase::DeleteMaterial(const std::wstring& group, const std::wstring& material,
                                           int32_t) {
    return Write("DeleteMaterial",
                 [&] { return RemoveMaterial(group, material) ? ZebDbOk : ZebDbFailed; });
}

ZebDbResult SqliteDatabase::UndoAddedMaterials(const ZebMaterialPairList& added, int32_t) {
    return Write("UndoAddedMaterials", [&] {
        for (const auto& [group, material] : added) RemoveMaterial(group, material);
        return ZebDbOk;
    });
}

ZebDbResult SqliteDatabase::UndoDeletedMaterials(const ZebMaterialPairList& deleted, int32_t) {
    return Write("UndoDeletedMaterials", [&] {
        for (const auto& [group, material] : deleted)
            if (!group.empty() && !material.empty())
                (void)InsertMaterial(group, material);  // one there already stays
        return ZebDbOk;
    });
}

ZebDbResult SqliteDatabase::UndoMaterialChanges(const ZebMaterialPairList& added,
                                                const ZebMaterialPairList& deleted, int32_t) {
    return Write("UndoMaterialChanges", [&] {
        for (const auto& [group, material] : added) RemoveMaterial(group, material);
        for (const auto& [group, material] : deleted)
            if (!group.empty() && !material.empty())
                (void)InsertMaterial(group, material);  // one there already stays
        return ZebDbOk;
    });
}

ZebDbResult SqliteDatabase::GetMaterialGroups(std::list<std::wstring>& groups, int32_t) {
    return ReadTexts("GetMaterialGroups", "SELECT name FROM material_group ORDER BY name_key",
                     groups);
}

ZebDbResult SqliteDatabase::GetGroupMaterials(const std::wstring& group, std::wstring& materials,
                                              int32_t) {
    std::wstring joined;
    const ZebDbResult result = Read("GetGroupMaterials", [&] {
        Statement select(db_,
                         "SELECT m.name FROM material m JOIN material_group g ON g.id = m.group_id"
                         " WHERE g.name_key = ?1 ORDER BY m.name_key");
        select.Bind(1, ZebFoldCase(group));
        while (select.Step()) joined += (joined.empty() ? L"" : L";") + select.Text(0);
        return ZebDbOk;
    });
    if (result == ZebDbOk) materials = std::move(joined);
    return result;
}

int32_t SqliteDatabase::CheckMaterialUse(const std::wstring& material, const std::wstring& group,
                                         int32_t) {
    return Read("CheckMaterialUse", [&] {
        if (!material.empty())
            return Exists(db_, "SELECT 1 FROM hardware WHERE material_key = ?1",
                          ZebFoldCase(material))
                       ? 0
                       : 1;
        return Exists(db_,
                      "SELECT 1 FROM hardware h JOIN material m ON m.name_key = h.material_key"
                      " JOIN material_group g ON g.id = m.group_id WHERE g.name_key = ?1",
                      ZebFoldCase(group))
                   ? 0
                   : 1;
    });
}

// ---- fastener names ----

ZebDbResult SqliteDatabase::GetFastenerNames(std::list<std::wstring>& names) {
    return ReadTexts("GetFastenerNames", "SELECT name FROM fastener_name ORDER BY id", names);
}

ZebDbResult SqliteDatabase::GetAlternateFastenerNames(std::list<std::wstring>& names) {
    return ReadTexts("GetAlternateFastenerNames",
                     "SELECT alternate FROM fastener_name WHERE alternate <> '' ORDER BY id",
                     names);
}

ZebDbResult SqliteDatabase::SetFastenerAttribute(const std::wstring& designation,
                                                 const std::wstring& text) {
    if (designation.empty()) return ZebDbFailed;
    return Write("SetFastenerAttribute", [&] {
        Statement upsert(
            db_,
            "INSERT INTO attribute(set_name, designation, designation_key, value)"
            " VALUES(?1, ?2, ?3, ?4) ON CONFLICT(set_name, designation_key)"
            " DO UPDATE SET designation = excluded.designation, value = excluded.value");
        upsert.Bind(1, std::wstring(kFastenerThreadAttributeSet))
            .Bind(2, designation)
            .Bind(3, ZebFoldCase(designation))
            .Bind(4, text)
            .Run();
        return ZebDbOk;
    });
}

ZebDbResult SqliteDatabase::AddFastenerName(const std::wstring& name) {
    if (name.empty()) return ZebDbFailed;
    return Write("AddFastenerName", [&] {
        Statement insert(db_,
                         "INSERT INTO fastener_name(name, name_key) VALUES(?1, ?2)"
                         " ON CONFLICT(name_key) DO NOTHING");
        insert.Bind(1, name).Bind(2, ZebFoldCase(name)).Run();
        return sqlite3_changes(db_) == 0 ? ZebDbExists : ZebDbOk;
    });
}

ZebDbResult SqliteDatabase::DeleteFastenerName(const std::wstring& name) {
    return Write("DeleteFastenerName", [&] {
        Statement remove(db_, "DELETE FROM fastener_name WHERE name_key = ?1");
        remove.Bind(1, ZebFoldCase(name)).Run();
        return sqlite3_changes(db_) == 0 ? ZebDbFailed : ZebDbOk;
    });
}

ZebDbResult SqliteDatabase::RenameFastenerName(const std::wstring& oldName,
                                               const std::wstring& newName) {
    if (newName.empty()) return ZebDbFailed;
    return Write("RenameFastenerName", [&] {
        // A name that another entry holds fails on the unique key and rolls back.
        Statement rename(
            db_, "UPDATE OR IGNORE fastener_name SET name = ?1, name_key = ?2 WHERE name_key = ?3");
        rename.Bind(1, newName).Bind(2, ZebFoldCase(newName)).Bind(3, ZebFoldCase(oldName)).Run();
        return sqlite3_changes(db_) == 0 ? ZebDbFailed : ZebDbOk;
    });
}

// ---- hardware records ----

ZebDbResult SqliteDatabase::GetHardwareList(std::list<ZebHardwareRecord>& records) {
    std::list<ZebHardwareRecord> read;
    const ZebDbResult result = Read("GetHardwareList", [&] {
        Statement select(
            db_,
            "SELECT id, designation, kind, standard, thread, length, material FROM hardware"
            " ORDER BY designation_key");
        while (select.Step())
            read.push_back({select.Int(0), select.Text(1), select.Text(2), select.Text(3),
                            select.Text(4), select.Real(5), select.Text(6)});
        return ZebDbOk;
    });
    if (result == ZebDbOk) records = std::move(read);
    return result;
}

ZebDbResult SqliteDatabase::AddHardwareRecord(ZebHardwareRecord& record) {
    if (record.designation.empty()) return ZebDbFailed;
    int64_t id = 0;
    const ZebDbResult result = Write("AddHardwareRecord", [&] {
        Statement insert(
            db_,
            "INSERT INTO hardware(designation, designation_key, kind, standard, thread, length,"
            " material, material_key) VALUES(?1, ?2, ?3, ?4, ?5, ?6, ?7, ?8)"
            " ON CONFLICT(designation_key) DO NOTHING");
        insert.Bind(1, record.designation)
            .Bind(2, ZebFoldCase(record.designation))
            .Bind(3, record.kind)
            .Bind(4, record.standard)
            .Bind(5, record.thread)
            .Bind(6, record.length)
            .Bind(7, record.material)
            .Bind(8, ZebFoldCase(record.material))
            .Run();
        if (sqlite3_changes(db_) == 0) return ZebDbExists;
        id = sqlite3_last_insert_rowid(db_);
        return ZebDbOk;
    });
    if (result == ZebDbOk) record.id = id;
    return result;
}

ZebDbResult SqliteDatabase::UpdateHardwareRecord(const ZebHardwareRecord& record) {
    if (record.designation.empty()) return ZebDbFailed;
    return Write("UpdateHardwareRecord", [&] {
        Statement stored(db_, "SELECT 1 FROM hardware WHERE id = ?1");
        stored.Bind(1, record.id);
        if (!stored.Step()) return ZebDbFailed;
        Statement other(db_, "SELECT 1 FROM hardware WHERE designation_key = ?1 AND id <> ?2");
        other.Bind(1, ZebFoldCase(record.designation)).Bind(2, record.id);
        if (other.Step()) return ZebDbExists;
        Statement update(
            db_,
            "UPDATE hardware SET designation = ?1, designation_key = ?2, kind = ?3, standard = ?4,"
            " thread = ?5, length = ?6, material = ?7, material_key = ?8 WHERE id = ?9");
        update.Bind(1, record.designation)
            .Bind(2, ZebFoldCase(record.designation))
            .Bind(3, record.kind)
            .Bind(4, record.standard)
            .Bind(5, record.thread)
            .Bind(6, record.length)
            .Bind(7, record.material)
            .Bind(8, ZebFoldCase(record.material))
            .Bind(9, record.id)
            .Run();
        return sqlite3_changes(db_) == 0 ? ZebDbFailed : ZebDbOk;
    });
}

ZebDbResult SqliteDatabase::DeleteHardwareRecord(int64_t id) {
    return Write("DeleteHardwareRecord", [&] {
        Statement remove(db_, "DELETE FROM hardware WHERE id = ?1");
        remove.Bind(1, id).Run();
        return sqlite3_changes(db_) == 0 ? ZebDbFailed : ZebDbOk;
    });
}

ZebDbResult SqliteDatabase::GetThreadSizes(std::list<std::wstring>& threads) {
    return ReadTexts("GetThreadSizes", "SELECT text FROM thread_size ORDER BY diameter", threads);
}

// ---- interference ignore list ----

ZebDbResult SqliteDatabase::GetInterferenceIgnoreList(std::list<std::wstring>& names) {
    return ReadTexts("GetInterferenceIgnoreList", "SELECT name FROM ignore_item ORDER BY position",
                     names);
}

ZebDbResult SqliteDatabase::SaveInterferenceIgnoreList(const std::list<std::wstring>& names) {
    return Write("SaveInterferenceIgnoreList", [&] {
        Execute(db_, "DELETE FROM ignore_item");
        Statement insert(db_, "INSERT INTO ignore_item(position, name) VALUES(?1, ?2)");
        int64_t position = 0;
        for (const std::wstring& name : names) {
            insert.Reset();
            insert.Bind(1, ++position).Bind(2, name).Run();
        }
        return ZebDbOk;
    });
}

// ---- attribute sets and the database itself ----

ZebDbResult SqliteDatabase::GetAttributeData(const std::wstring& setName,
                                             std::map<std::wstring, std::wstring>& data) {
    std::map<std::wstring, std::wstring> read;
    const ZebDbResult result = Read("GetAttributeData", [&] {
        Statement select(db_, "SELECT designation, value FROM attribute WHERE set_name = ?1");
        select.Bind(1, setName);
        while (select.Step()) read[select.Text(0)] = select.Text(1);
        return ZebDbOk;
    });
    if (result == ZebDbOk) data = std::move(read);
    return result;
}

ZebDbResult SqliteDatabase::GetDatabaseName(std::wstring& name) {
    return Read("GetDatabaseName", [&] {
        Statement select(db_, "SELECT value FROM meta WHERE key = 'name'");
        if (!select.Step()) return ZebDbFailed;
        name = select.Text(0);
        return ZebDbOk;
    });
}

}  // namespace zeb_db

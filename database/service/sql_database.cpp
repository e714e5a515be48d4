#include "sql_database.h"

#include <cstdio>

#include "framework/case_fold.h"
#include "framework/text_convert.h"
#include "schema.h"

namespace zeb_db {
namespace {

void Report(const std::wstring& where, const char* operation, const std::string& message) {
    std::fprintf(stderr, "vantor: database %s: %s: %s\n", ToUtf8(where).c_str(), operation,
                 message.c_str());
}

}  // namespace

std::unique_ptr<SqlDatabase> SqlDatabase::Start(std::unique_ptr<SqlSession> session, bool upgrade,
                                                const std::function<void()>& prepare,
                                                std::string& error) {
    try {
        prepare();
        if (upgrade) {
            session->Begin(true);
            try {
                UpgradeSchema(*session);
                session->Commit();
            } catch (const DbError&) {
                session->Rollback();
                throw;
            }
        }
    } catch (const DbError& e) {
        error = e.what();
        return nullptr;
    }
    return std::make_unique<SqlDatabase>(std::move(session));
}

int32_t SqlDatabase::Transaction(const char* operation, bool write,
                                 const std::function<int32_t()>& body) {
    if (const std::string problem = session_->Problem(); !problem.empty()) {
        Report(session_->Where(), operation, problem);
        return ZebDbFailed;
    }
    try {
        session_->Begin(write);
    } catch (const DbError& e) {
        Report(session_->Where(), operation, e.what());
        return ZebDbFailed;
    }
    try {
        const int32_t result = body();
        if (write && result != ZebDbOk)
            session_->Execute("ROLLBACK");
        else
            session_->Commit();
        return result;
    } catch (const std::exception& e) {
        // A database error, or data that breaks a rule of ours (a material without its group).
        session_->Rollback();
        Report(session_->Where(), operation, e.what());
        return ZebDbFailed;
    }
}

ZebDbResult SqlDatabase::Read(const char* operation, const std::function<int32_t()>& body) {
    return static_cast<ZebDbResult>(Transaction(operation, false, body));
}

ZebDbResult SqlDatabase::Write(const char* operation, const std::function<int32_t()>& body) {
    return static_cast<ZebDbResult>(Transaction(operation, true, body));
}

ZebDbResult SqlDatabase::ReadTexts(const char* operation, const char* sql,
                                   std::list<std::wstring>& texts) {
    std::list<std::wstring> read;
    const ZebDbResult result = Read(operation, [&] {
        const auto select = session_->Prepare(sql);
        while (select->Step()) read.push_back(select->Text(0));
        return ZebDbOk;
    });
    if (result == ZebDbOk) texts = std::move(read);
    return result;
}

bool SqlDatabase::Exists(const char* sql, const std::wstring& key) {
    const auto find = session_->Prepare(sql);
    find->Bind(1, key);
    return find->Step();
}

int64_t SqlDatabase::GroupId(const std::wstring& group) {
    const auto find = session_->Prepare("SELECT id FROM material_group WHERE name_key = ?1");
    find->Bind(1, ZebFoldCase(group));
    return find->Step() ? find->Int(0) : 0;
}

// ---- materials ----

ZebDbResult SqlDatabase::InsertMaterial(const std::wstring& group, const std::wstring& material) {
    // A group another engineer creates at the same moment is waited for and then used.
    session_
        ->Prepare(
            "INSERT INTO material_group(name, name_key) VALUES(?1, ?2)"
            " ON CONFLICT(name_key) DO NOTHING")
        ->Bind(1, group)
        .Bind(2, ZebFoldCase(group))
        .Run();
    const int64_t groupId = GroupId(group);
    const auto insert = session_->Prepare(
        "INSERT INTO material(group_id, name, name_key) VALUES(?1, ?2, ?3)"
        " ON CONFLICT(group_id, name_key) DO NOTHING");
    return insert->Bind(1, groupId).Bind(2, material).Bind(3, ZebFoldCase(material)).Run() == 0
               ? ZebDbExists
               : ZebDbOk;
}

bool SqlDatabase::RemoveMaterial(const std::wstring& group, const std::wstring& material) {
    const int64_t groupId = GroupId(group);
    if (groupId == 0) return false;
    const auto remove =
        session_->Prepare("DELETE FROM material WHERE group_id = ?1 AND name_key = ?2");
    if (remove->Bind(1, groupId).Bind(2, ZebFoldCase(material)).Run() == 0) return false;
    session_
        ->Prepare(
            "DELETE FROM material_group WHERE id = ?1"
            " AND NOT EXISTS (SELECT 1 FROM material WHERE group_id = ?1)")
        ->Bind(1, groupId)
        .Run();
    return true;
}

int32_t SqlDatabase::MaterialExistsInGroup(const std::wstring& material, const std::wstring& group,
                                           int32_t) {
    const ZebDbResult result = Read("MaterialExistsInGroup", [&] {
        const auto find = session_->Prepare(
            "SELECT 1 FROM material m JOIN material_group g ON g.id = m.group_id"
            " WHERE g.name_key = ?1 AND m.name_key = ?2");
        find->Bind(1, ZebFoldCase(group)).Bind(2, ZebFoldCase(material));
        return find->Step() ? 1 : 0;
    });
    // A failed read must not pass for "exists".
    return result == 1 ? 1 : 0;
}

ZebDbResult SqlDatabase::GetMaterialPairs(ZebMaterialPairList& pairs, int32_t) {
    ZebMaterialPairList read;
    const ZebDbResult result = Read("GetMaterialPairs", [&] {
        const auto select = session_->Prepare(
            "SELECT g.name, m.name FROM material m JOIN material_group g ON g.id = m.group_id"
            " ORDER BY g.name_key, m.name_key");
        while (select->Step()) read.emplace_back(select->Text(0), select->Text(1));
        return ZebDbOk;
    });
    if (result == ZebDbOk) pairs = std::move(read);
    return result;
}

ZebDbResult SqlDatabase::AddMaterial(const std::wstring& group, const std::wstring& material,
                                     int32_t) {
    if (group.empty() || material.empty()) return ZebDbFailed;
    return Write("AddMaterial", [&] { return InsertMaterial(group, material); });
}

ZebDbResult SqlDatabase::DeleteMaterial(const std::wstring& group, const std::wstring& material,
                                        int32_t) {
    return Write("DeleteMaterial",
                 [&] { return RemoveMaterial(group, material) ? ZebDbOk : ZebDbFailed; });
}

ZebDbResult SqlDatabase::UndoAddedMaterials(const ZebMaterialPairList& added, int32_t) {
    return Undo("UndoAddedMaterials", added, {});
}

ZebDbResult SqlDatabase::UndoDeletedMaterials(const ZebMaterialPairList& deleted, int32_t) {
    return Undo("UndoDeletedMaterials", {}, deleted);
}

ZebDbResult SqlDatabase::UndoMaterialChanges(const ZebMaterialPairList& added,
                                             const ZebMaterialPairList& deleted, int32_t) {
    return Undo("UndoMaterialChanges", added, deleted);
}

ZebDbResult SqlDatabase::Undo(const char* operation, const ZebMaterialPairList& added,
                              const ZebMaterialPairList& deleted) {
    return Write(operation, [&] {
        for (const auto& [group, material] : added) RemoveMaterial(group, material);
        for (const auto& [group, material] : deleted)
            if (!group.empty() && !material.empty())
                (void)InsertMaterial(group, material);  // one there already stays
        return ZebDbOk;
    });
}

ZebDbResult SqlDatabase::GetMaterialGroups(std::list<std::wstring>& groups, int32_t) {
    return ReadTexts("GetMaterialGroups", "SELECT name FROM material_group ORDER BY name_key",
                     groups);
}

ZebDbResult SqlDatabase::GetGroupMaterials(const std::wstring& group, std::wstring& materials,
                                           int32_t) {
    std::wstring joined;
    const ZebDbResult result = Read("GetGroupMaterials", [&] {
        const auto select = session_->Prepare(
            "SELECT m.name FROM material m JOIN material_group g ON g.id = m.group_id"
            " WHERE g.name_key = ?1 ORDER BY m.name_key");
        select->Bind(1, ZebFoldCase(group));
        while (select->Step()) joined += (joined.empty() ? L"" : L";") + select->Text(0);
        return ZebDbOk;
    });
    if (result == ZebDbOk) materials = std::move(joined);
    return result;
}

int32_t SqlDatabase::CheckMaterialUse(const std::wstring& material, const std::wstring& group,
                                      int32_t) {
    return Read("CheckMaterialUse", [&] {
        if (!material.empty())
            return Exists("SELECT 1 FROM hardware WHERE material_key = ?1 LIMIT 1",
                          ZebFoldCase(material))
                       ? 0
                       : 1;
        return Exists(
                   "SELECT 1 FROM hardware h JOIN material m ON m.name_key = h.material_key"
                   " JOIN material_group g ON g.id = m.group_id WHERE g.name_key = ?1 LIMIT 1",
                   ZebFoldCase(group))
                   ? 0
                   : 1;
    });
}

// ---- fastener names ----

ZebDbResult SqlDatabase::GetFastenerNames(std::list<std::wstring>& names) {
    return ReadTexts("GetFastenerNames", "SELECT name FROM fastener_name ORDER BY id", names);
}

ZebDbResult SqlDatabase::GetAlternateFastenerNames(std::list<std::wstring>& names) {
    return ReadTexts("GetAlternateFastenerNames",
                     "SELECT alternate FROM fastener_name WHERE alternate <> '' ORDER BY id",
                     names);
}

ZebDbResult SqlDatabase::SetFastenerAttribute(const std::wstring& designation,
                                              const std::wstring& text) {
    if (designation.empty()) return ZebDbFailed;
    return Write("SetFastenerAttribute", [&] {
        session_
            ->Prepare(
                "INSERT INTO attribute(set_name, designation, designation_key, value)"
                " VALUES(?1, ?2, ?3, ?4) ON CONFLICT(set_name, designation_key)"
                " DO UPDATE SET designation = excluded.designation, value = excluded.value")
            ->Bind(1, std::wstring(kFastenerThreadAttributeSet))
            .Bind(2, designation)
            .Bind(3, ZebFoldCase(designation))
            .Bind(4, text)
            .Run();
        return ZebDbOk;
    });
}

ZebDbResult SqlDatabase::AddFastenerName(const std::wstring& name) {
    if (name.empty()) return ZebDbFailed;
    return Write("AddFastenerName", [&] {
        // Of two engineers adding the same name at once, the second waits on the key and then
        // inserts nothing.
        const auto insert = session_->Prepare(
            "INSERT INTO fastener_name(name, name_key) VALUES(?1, ?2)"
            " ON CONFLICT(name_key) DO NOTHING");
        return insert->Bind(1, name).Bind(2, ZebFoldCase(name)).Run() == 0 ? ZebDbExists : ZebDbOk;
    });
}

ZebDbResult SqlDatabase::DeleteFastenerName(const std::wstring& name) {
    return Write("DeleteFastenerName", [&] {
        const auto remove = session_->Prepare("DELETE FROM fastener_name WHERE name_key = ?1");
        return remove->Bind(1, ZebFoldCase(name)).Run() == 0 ? ZebDbFailed : ZebDbOk;
    });
}

ZebDbResult SqlDatabase::RenameFastenerName(const std::wstring& oldName,
                                            const std::wstring& newName) {
    if (newName.empty()) return ZebDbFailed;
    return Write("RenameFastenerName", [&] {
        try {
            const auto rename = session_->Prepare(
                "UPDATE fastener_name SET name = ?1, name_key = ?2 WHERE name_key = ?3");
            return rename->Bind(1, newName)
                               .Bind(2, ZebFoldCase(newName))
                               .Bind(3, ZebFoldCase(oldName))
                               .Run() == 0
                       ? ZebDbFailed
                       : ZebDbOk;
        } catch (const DbError& e) {
            // Another entry holds the new name: refused, not a fault.
            if (e.IsUniqueViolation()) return ZebDbFailed;
            throw;
        }
    });
}

// ---- hardware records ----

ZebDbResult SqlDatabase::GetHardwareList(std::list<ZebHardwareRecord>& records) {
    std::list<ZebHardwareRecord> read;
    const ZebDbResult result = Read("GetHardwareList", [&] {
        const auto select = session_->Prepare(
            "SELECT id, designation, kind, standard, thread, length, material FROM hardware"
            " ORDER BY designation_key");
        while (select->Step())
            read.push_back({select->Int(0), select->Text(1), select->Text(2), select->Text(3),
                            select->Text(4), select->Real(5), select->Text(6)});
        return ZebDbOk;
    });
    if (result == ZebDbOk) records = std::move(read);
    return result;
}

ZebDbResult SqlDatabase::AddHardwareRecord(ZebHardwareRecord& record) {
    if (record.designation.empty()) return ZebDbFailed;
    int64_t id = 0;
    const ZebDbResult result = Write("AddHardwareRecord", [&] {
        const auto insert = session_->Prepare(
            "INSERT INTO hardware(designation, designation_key, kind, standard, thread, length,"
            " material, material_key) VALUES(?1, ?2, ?3, ?4, ?5, ?6, ?7, ?8)"
            " ON CONFLICT(designation_key) DO NOTHING RETURNING id");
        BindHardware(*insert, record);
        if (!insert->Step()) return ZebDbExists;
        id = insert->Int(0);
        return ZebDbOk;
    });
    if (result == ZebDbOk) record.id = id;
    return result;
}

ZebDbResult SqlDatabase::UpdateHardwareRecord(const ZebHardwareRecord& record) {
    if (record.designation.empty()) return ZebDbFailed;
    return Write("UpdateHardwareRecord", [&] {
        try {
            const auto update = session_->Prepare(
                "UPDATE hardware SET designation = ?1, designation_key = ?2, kind = ?3,"
                " standard = ?4, thread = ?5, length = ?6, material = ?7, material_key = ?8"
                " WHERE id = ?9");
            return BindHardware(*update, record).Bind(9, record.id).Run() == 0 ? ZebDbFailed
                                                                               : ZebDbOk;
        } catch (const DbError& e) {
            // The new designation belongs to another record.
            if (e.IsUniqueViolation()) return ZebDbExists;
            throw;
        }
    });
}

ZebDbResult SqlDatabase::DeleteHardwareRecord(int64_t id) {
    return Write("DeleteHardwareRecord", [&] {
        const auto remove = session_->Prepare("DELETE FROM hardware WHERE id = ?1");
        return remove->Bind(1, id).Run() == 0 ? ZebDbFailed : ZebDbOk;
    });
}

ZebDbResult SqlDatabase::GetThreadSizes(std::list<std::wstring>& threads) {
    return ReadTexts("GetThreadSizes", "SELECT text FROM thread_size ORDER BY diameter", threads);
}

// ---- interference ignore list ----

ZebDbResult SqlDatabase::GetInterferenceIgnoreList(std::list<std::wstring>& names) {
    return ReadTexts("GetInterferenceIgnoreList", "SELECT name FROM ignore_item ORDER BY position",
                     names);
}

ZebDbResult SqlDatabase::SaveInterferenceIgnoreList(const std::list<std::wstring>& names) {
    return Write("SaveInterferenceIgnoreList", [&] {
        session_->Execute("DELETE FROM ignore_item");
        const auto insert =
            session_->Prepare("INSERT INTO ignore_item(position, name) VALUES(?1, ?2)");
        int64_t position = 0;
        for (const std::wstring& name : names) {
            insert->Reset();
            insert->Bind(1, ++position).Bind(2, name).Run();
        }
        return ZebDbOk;
    });
}

// ---- attribute sets and the database itself ----

ZebDbResult SqlDatabase::GetAttributeData(const std::wstring& setName,
                                          std::map<std::wstring, std::wstring>& data) {
    std::map<std::wstring, std::wstring> read;
    const ZebDbResult result = Read("GetAttributeData", [&] {
        const auto select =
            session_->Prepare("SELECT designation, value FROM attribute WHERE set_name = ?1");
        select->Bind(1, setName);
        while (select->Step()) read[select->Text(0)] = select->Text(1);
        return ZebDbOk;
    });
    if (result == ZebDbOk) data = std::move(read);
    return result;
}

ZebDbResult SqlDatabase::GetDatabaseName(std::wstring& name) {
    return Read("GetDatabaseName", [&] {
        const auto select = session_->Prepare("SELECT value FROM meta WHERE key = 'name'");
        if (!select->Step()) return ZebDbFailed;
        name = select->Text(0);
        return ZebDbOk;
    });
}

}  // namespace zeb_db

#include "postgres_database.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <utility>
#include <vector>

#include "framework/case_fold.h"
#include "framework/text_convert.h"
#include "pg_schema.h"
#include "pg_statement.h"

namespace zeb_db {
namespace {

// Connection parameters the user's string may set otherwise. An unreachable server gives "no
// database" after 5 s instead of a hung dialog; a network that dies under a session is noticed
// within about a minute (TCP only; a local socket needs none of it).
constexpr std::pair<const char*, const char*> kDefaults[] = {
    {"connect_timeout", "5"},  {"keepalives_idle", "30"},     {"keepalives_interval", "10"},
    {"keepalives_count", "3"}, {"tcp_user_timeout", "60000"},
};
// No single statement of ours runs this long; one that waits on a stuck lock gives up.
constexpr const char* kStatementTimeout = "30s";

void Report(const std::wstring& where, const char* operation, const std::string& message) {
    std::fprintf(stderr, "vantor: database %s: %s: %s\n", ToUtf8(where).c_str(), operation,
                 message.c_str());
}

std::string ConnectionMessage(PGconn* conn) {
    std::string message = conn ? PQerrorMessage(conn) : "out of memory";
    while (!message.empty() && (message.back() == '\n' || message.back() == ' '))
        message.pop_back();
    return message.empty() ? "the connection failed" : message;
}

// Settings of the session, made again after every reconnection.
void PrepareSession(PGconn* conn) {
    // A timeout the user set in the connection string is kept.
    if (Exec(conn, "SELECT current_setting('statement_timeout')").Text(0, 0) == L"0")
        Exec(conn, "SELECT set_config('statement_timeout', $1, false)",
             {std::wstring(FromUtf8(kStatementTimeout))});
}

// Connects with the user's parameters plus ours: UTF-8 texts and a connect timeout.
PGconn* Connect(const std::string& conninfo, std::string& error) {
    char* parseError = nullptr;
    PQconninfoOption* options = PQconninfoParse(conninfo.c_str(), &parseError);
    if (!options) {
        error = parseError ? parseError : "the connection string cannot be read";
        PQfreemem(parseError);
        while (!error.empty() && error.back() == '\n') error.pop_back();
        return nullptr;
    }
    std::vector<const char*> keys;
    std::vector<const char*> values;
    for (PQconninfoOption* o = options; o->keyword; ++o) {
        if (!o->val || std::string_view(o->keyword) == "client_encoding") continue;
        keys.push_back(o->keyword);
        values.push_back(o->val);
    }
    for (const auto& entry : kDefaults) {
        const std::string_view key = entry.first;
        if (key == "connect_timeout" && std::getenv("PGCONNECT_TIMEOUT")) continue;
        if (std::find_if(keys.begin(), keys.end(), [&](const char* k) { return k == key; }) ==
            keys.end()) {
            keys.push_back(entry.first);
            values.push_back(entry.second);
        }
    }
    keys.push_back("client_encoding");
    values.push_back("UTF8");
    keys.push_back("fallback_application_name");
    values.push_back("vantor");
    keys.push_back(nullptr);
    values.push_back(nullptr);
    PGconn* conn = PQconnectdbParams(keys.data(), values.data(), 0);
    PQconninfoFree(options);
    if (PQstatus(conn) != CONNECTION_OK) {
        error = ConnectionMessage(conn);
        PQfinish(conn);
        return nullptr;
    }
    return conn;
}

int64_t GroupId(PGconn* conn, const std::wstring& group) {
    const PgResult find =
        Exec(conn, "SELECT id FROM material_group WHERE name_key = $1", {ZebFoldCase(group)});
    return find.Rows() > 0 ? find.Int(0, 0) : 0;
}

bool Exists(PGconn* conn, const char* sql, const std::wstring& key) {
    return Exec(conn, sql, {key}).Rows() > 0;
}

}  // namespace

std::unique_ptr<PostgresDatabase> PostgresDatabase::Open(const std::string& conninfo,
                                                         std::string& error, bool upgrade) {
    PGconn* conn = Connect(conninfo, error);
    if (!conn) return nullptr;
    try {
        PrepareSession(conn);
        if (!upgrade)
            return std::unique_ptr<PostgresDatabase>(
                new PostgresDatabase(conn, FromUtf8(WithoutPassword(conninfo))));
        ExecScript(conn, "BEGIN");
        try {
            UpgradePgSchema(conn);
            ExecScript(conn, "COMMIT");
        } catch (const PgError&) {
            PQclear(PQexec(conn, "ROLLBACK"));
            throw;
        }
    } catch (const PgError& e) {
        error = e.what();
        PQfinish(conn);
        return nullptr;
    }
    return std::unique_ptr<PostgresDatabase>(
        new PostgresDatabase(conn, FromUtf8(WithoutPassword(conninfo))));
}

PostgresDatabase::~PostgresDatabase() { PQfinish(conn_); }

bool PostgresDatabase::Reconnect(const char* operation) {
    if (!conn_) {
        Report(display_, operation, "the session belongs to another process");
        return false;
    }
    if (PQstatus(conn_) == CONNECTION_OK) return true;
    PQreset(conn_);
    if (PQstatus(conn_) != CONNECTION_OK) {
        Report(display_, operation, ConnectionMessage(conn_));
        return false;
    }
    try {
        PrepareSession(conn_);
    } catch (const PgError& e) {
        Report(display_, operation, e.what());
        return false;
    }
    return true;
}

int32_t PostgresDatabase::Transaction(const char* operation, bool write,
                                      const std::function<int32_t()>& body) {
    if (!Reconnect(operation)) return ZebDbFailed;
    try {
        ExecScript(conn_, write ? "BEGIN" : "BEGIN READ ONLY");
    } catch (const PgError& e) {
        Report(display_, operation, e.what());
        return ZebDbFailed;
    }
    try {
        const int32_t result = body();
        ExecScript(conn_, (write && result != ZebDbOk) ? "ROLLBACK" : "COMMIT");
        return result;
    } catch (const std::exception& e) {
        // A server error, or data that breaks a rule of ours (a material without its group).
        if (PQstatus(conn_) == CONNECTION_OK) PQclear(PQexec(conn_, "ROLLBACK"));
        Report(display_, operation, e.what());
        return ZebDbFailed;
    }
}

ZebDbResult PostgresDatabase::Read(const char* operation, const std::function<int32_t()>& body) {
    return static_cast<ZebDbResult>(Transaction(operation, false, body));
}

ZebDbResult PostgresDatabase::Write(const char* operation, const std::function<int32_t()>& body) {
    return static_cast<ZebDbResult>(Transaction(operation, true, body));
}

int32_t PostgresDatabase::WithTransaction(const char* operation,
                                          const std::function<int32_t(PGconn*)>& body) {
    return Transaction(operation, true, [&] { return body(conn_); });
}

ZebDbResult PostgresDatabase::ReadTexts(const char* operation, const char* sql,
                                        std::list<std::wstring>& texts) {
    std::list<std::wstring> read;
    const ZebDbResult result = Read(operation, [&] {
        const PgResult select = Exec(conn_, sql);
        for (int r = 0; r < select.Rows(); ++r) read.push_back(select.Text(r, 0));
        return ZebDbOk;
    });
    if (result == ZebDbOk) texts = std::move(read);
    return result;
}

// ---- materials ----

ZebDbResult PostgresDatabase::InsertMaterial(const std::wstring& group,
                                             const std::wstring& material) {
    // A group another engineer creates at the same moment is waited for and then used.
    Exec(conn_,
         "INSERT INTO material_group(name, name_key) VALUES($1, $2)"
         " ON CONFLICT(name_key) DO NOTHING",
         {group, ZebFoldCase(group)});
    const int64_t groupId = GroupId(conn_, group);
    const PgResult insert = Exec(conn_,
                                 "INSERT INTO material(group_id, name, name_key) VALUES($1, $2, $3)"
                                 " ON CONFLICT(group_id, name_key) DO NOTHING",
                                 {groupId, material, ZebFoldCase(material)});
    return insert.Affected() == 0 ? ZebDbExists : ZebDbOk;
}

bool PostgresDatabase::RemoveMaterial(const std::wstring& group, const std::wstring& material) {
    const int64_t groupId = GroupId(conn_, group);
    if (groupId == 0) return false;
    const PgResult remove =
        Exec(conn_, "DELETE FROM material WHERE group_id = $1 AND name_key = $2",
             {groupId, ZebFoldCase(material)});
    if (remove.Affected() == 0) return false;
    Exec(conn_,
         "DELETE FROM material_group WHERE id = $1"
         " AND NOT EXISTS (SELECT 1 FROM material WHERE group_id = $1)",
         {groupId});
    return true;
}

int32_t PostgresDatabase::MaterialExistsInGroup(const std::wstring& material,
                                                const std::wstring& group, int32_t) {
    const ZebDbResult result = Read("MaterialExistsInGroup", [&] {
        return Exec(conn_,
                    "SELECT 1 FROM material m JOIN material_group g ON g.id = m.group_id"
                    " WHERE g.name_key = $1 AND m.name_key = $2",
                    {ZebFoldCase(group), ZebFoldCase(material)})
                           .Rows() > 0
                   ? 1
                   : 0;
    });
    // A failed read must not pass for "exists".
    return result == 1 ? 1 : 0;
}

ZebDbResult PostgresDatabase::GetMaterialPairs(ZebMaterialPairList& pairs, int32_t) {
    ZebMaterialPairList read;
    const ZebDbResult result = Read("GetMaterialPairs", [&] {
        const PgResult select =
            Exec(conn_,
                 "SELECT g.name, m.name FROM material m JOIN material_group g ON g.id = m.group_id"
                 " ORDER BY g.name_key, m.name_key");
        for (int r = 0; r < select.Rows(); ++r)
            read.emplace_back(select.Text(r, 0), select.Text(r, 1));
        return ZebDbOk;
    });
    if (result == ZebDbOk) pairs = std::move(read);
    return result;
}

ZebDbResult PostgresDatabase::AddMaterial(const std::wstring& group, const std::wstring& material,
                                          int32_t) {
    if (group.empty() || material.empty()) return ZebDbFailed;
    return Write("AddMaterial", [&] { return InsertMaterial(group, material); });
}

ZebDbResult PostgresDatabase::DeleteMaterial(const std::wstring& group,
                                             const std::wstring& material, int32_t) {
    return Write("DeleteMaterial",
                 [&] { return RemoveMaterial(group, material) ? ZebDbOk : ZebDbFailed; });
}

ZebDbResult PostgresDatabase::UndoAddedMaterials(const ZebMaterialPairList& added, int32_t) {
    return Write("UndoAddedMaterials", [&] {
        for (const auto& [group, material] : added) RemoveMaterial(group, material);
        return ZebDbOk;
    });
}

ZebDbResult PostgresDatabase::UndoDeletedMaterials(const ZebMaterialPairList& deleted, int32_t) {
    return Write("UndoDeletedMaterials", [&] {
        for (const auto& [group, material] : deleted)
            if (!group.empty() && !material.empty())
                (void)InsertMaterial(group, material);  // one there already stays
        return ZebDbOk;
    });
}

ZebDbResult PostgresDatabase::UndoMaterialChanges(const ZebMaterialPairList& added,
                                                  const ZebMaterialPairList& deleted, int32_t) {
    return Write("UndoMaterialChanges", [&] {
        for (const auto& [group, material] : added) RemoveMaterial(group, material);
        for (const auto& [group, material] : deleted)
            if (!group.empty() && !material.empty())
                (void)InsertMaterial(group, material);  // one there already stays
        return ZebDbOk;
    });
}

ZebDbResult PostgresDatabase::GetMaterialGroups(std::list<std::wstring>& groups, int32_t) {
    return ReadTexts("GetMaterialGroups", "SELECT name FROM material_group ORDER BY name_key",
                     groups);
}

ZebDbResult PostgresDatabase::GetGroupMaterials(const std::wstring& group, std::wstring& materials,
                                                int32_t) {
    std::wstring joined;
    const ZebDbResult result = Read("GetGroupMaterials", [&] {
        const PgResult select =
            Exec(conn_,
                 "SELECT m.name FROM material m JOIN material_group g ON g.id = m.group_id"
                 " WHERE g.name_key = $1 ORDER BY m.name_key",
                 {ZebFoldCase(group)});
        for (int r = 0; r < select.Rows(); ++r)
            joined += (joined.empty() ? L"" : L";") + select.Text(r, 0);
        return ZebDbOk;
    });
    if (result == ZebDbOk) materials = std::move(joined);
    return result;
}

int32_t PostgresDatabase::CheckMaterialUse(const std::wstring& material, const std::wstring& group,
                                           int32_t) {
    return Read("CheckMaterialUse", [&] {
        if (!material.empty())
            return Exists(conn_, "SELECT 1 FROM hardware WHERE material_key = $1 LIMIT 1",
                          ZebFoldCase(material))
                       ? 0
                       : 1;
        return Exists(conn_,
                      "SELECT 1 FROM hardware h JOIN material m ON m.name_key = h.material_key"
                      " JOIN material_group g ON g.id = m.group_id WHERE g.name_key = $1 LIMIT 1",
                      ZebFoldCase(group))
                   ? 0
                   : 1;
    });
}

// ---- fastener names ----

ZebDbResult PostgresDatabase::GetFastenerNames(std::list<std::wstring>& names) {
    return ReadTexts("GetFastenerNames", "SELECT name FROM fastener_name ORDER BY id", names);
}

ZebDbResult PostgresDatabase::GetAlternateFastenerNames(std::list<std::wstring>& names) {
    return ReadTexts("GetAlternateFastenerNames",
                     "SELECT alternate FROM fastener_name WHERE alternate <> '' ORDER BY id",
                     names);
}

ZebDbResult PostgresDatabase::SetFastenerAttribute(const std::wstring& designation,
                                                   const std::wstring& text) {
    if (designation.empty()) return ZebDbFailed;
    return Write("SetFastenerAttribute", [&] {
        Exec(conn_,
             "INSERT INTO attribute(set_name, designation, designation_key, value)"
             " VALUES($1, $2, $3, $4) ON CONFLICT(set_name, designation_key)"
             " DO UPDATE SET designation = excluded.designation, value = excluded.value",
             {std::wstring(kFastenerThreadAttributeSet), designation, ZebFoldCase(designation),
              text});
        return ZebDbOk;
    });
}

ZebDbResult PostgresDatabase::AddFastenerName(const std::wstring& name) {
    if (name.empty()) return ZebDbFailed;
    return Write("AddFastenerName", [&] {
        // Of two engineers adding the same name at once, the second waits on the key and then
        // inserts nothing.
        const PgResult insert = Exec(conn_,
                                     "INSERT INTO fastener_name(name, name_key) VALUES($1, $2)"
                                     " ON CONFLICT(name_key) DO NOTHING",
                                     {name, ZebFoldCase(name)});
        return insert.Affected() == 0 ? ZebDbExists : ZebDbOk;
    });
}

ZebDbResult PostgresDatabase::DeleteFastenerName(const std::wstring& name) {
    return Write("DeleteFastenerName", [&] {
        return Exec(conn_, "DELETE FROM fastener_name WHERE name_key = $1", {ZebFoldCase(name)})
                           .Affected() == 0
                   ? ZebDbFailed
                   : ZebDbOk;
    });
}

ZebDbResult PostgresDatabase::RenameFastenerName(const std::wstring& oldName,
                                                 const std::wstring& newName) {
    if (newName.empty()) return ZebDbFailed;
    return Write("RenameFastenerName", [&] {
        try {
            return Exec(conn_,
                        "UPDATE fastener_name SET name = $1, name_key = $2 WHERE name_key = $3",
                        {newName, ZebFoldCase(newName), ZebFoldCase(oldName)})
                               .Affected() == 0
                       ? ZebDbFailed
                       : ZebDbOk;
        } catch (const PgError& e) {
            // Another entry holds the new name: refused, not a fault.
            if (e.IsUniqueViolation()) return ZebDbFailed;
            throw;
        }
    });
}

// ---- hardware records ----

ZebDbResult PostgresDatabase::GetHardwareList(std::list<ZebHardwareRecord>& records) {
    std::list<ZebHardwareRecord> read;
    const ZebDbResult result = Read("GetHardwareList", [&] {
        const PgResult select =
            Exec(conn_,
                 "SELECT id, designation, kind, standard, thread, length, material FROM hardware"
                 " ORDER BY designation_key");
        for (int r = 0; r < select.Rows(); ++r)
            read.push_back({select.Int(r, 0), select.Text(r, 1), select.Text(r, 2),
                            select.Text(r, 3), select.Text(r, 4), select.Real(r, 5),
                            select.Text(r, 6)});
        return ZebDbOk;
    });
    if (result == ZebDbOk) records = std::move(read);
    return result;
}

ZebDbResult PostgresDatabase::AddHardwareRecord(ZebHardwareRecord& record) {
    if (record.designation.empty()) return ZebDbFailed;
    int64_t id = 0;
    const ZebDbResult result = Write("AddHardwareRecord", [&] {
        const PgResult insert = Exec(
            conn_,
            "INSERT INTO hardware(designation, designation_key, kind, standard, thread, length,"
            " material, material_key) VALUES($1, $2, $3, $4, $5, $6, $7, $8)"
            " ON CONFLICT(designation_key) DO NOTHING RETURNING id",
            {record.designation, ZebFoldCase(record.designation), record.kind, record.standard,
             record.thread, record.length, record.material, ZebFoldCase(record.material)});
        if (insert.Rows() == 0) return ZebDbExists;
        id = insert.Int(0, 0);
        return ZebDbOk;
    });
    if (result == ZebDbOk) record.id = id;
    return result;
}

ZebDbResult PostgresDatabase::UpdateHardwareRecord(const ZebHardwareRecord& record) {
    if (record.designation.empty()) return ZebDbFailed;
    return Write("UpdateHardwareRecord", [&] {
        try {
            const PgResult update =
                Exec(conn_,
                     "UPDATE hardware SET designation = $1, designation_key = $2, kind = $3,"
                     " standard = $4, thread = $5, length = $6, material = $7, material_key = $8"
                     " WHERE id = $9",
                     {record.designation, ZebFoldCase(record.designation), record.kind,
                      record.standard, record.thread, record.length, record.material,
                      ZebFoldCase(record.material), record.id});
            return update.Affected() == 0 ? ZebDbFailed : ZebDbOk;
        } catch (const PgError& e) {
            // The new designation belongs to another record.
            if (e.IsUniqueViolation()) return ZebDbExists;
            throw;
        }
    });
}

ZebDbResult PostgresDatabase::DeleteHardwareRecord(int64_t id) {
    return Write("DeleteHardwareRecord", [&] {
        return Exec(conn_, "DELETE FROM hardware WHERE id = $1", {id}).Affected() == 0 ? ZebDbFailed
                                                                                       : ZebDbOk;
    });
}

ZebDbResult PostgresDatabase::GetThreadSizes(std::list<std::wstring>& threads) {
    return ReadTexts("GetThreadSizes", "SELECT text FROM thread_size ORDER BY diameter", threads);
}

// ---- interference ignore list ----

ZebDbResult PostgresDatabase::GetInterferenceIgnoreList(std::list<std::wstring>& names) {
    return ReadTexts("GetInterferenceIgnoreList", "SELECT name FROM ignore_item ORDER BY position",
                     names);
}

ZebDbResult PostgresDatabase::SaveInterferenceIgnoreList(const std::list<std::wstring>& names) {
    return Write("SaveInterferenceIgnoreList", [&] {
        ExecScript(conn_, "DELETE FROM ignore_item");
        int64_t position = 0;
        for (const std::wstring& name : names)
            Exec(conn_, "INSERT INTO ignore_item(position, name) VALUES($1, $2)",
                 {++position, name});
        return ZebDbOk;
    });
}

// ---- attribute sets and the database itself ----

ZebDbResult PostgresDatabase::GetAttributeData(const std::wstring& setName,
                                               std::map<std::wstring, std::wstring>& data) {
    std::map<std::wstring, std::wstring> read;
    const ZebDbResult result = Read("GetAttributeData", [&] {
        const PgResult select =
            Exec(conn_, "SELECT designation, value FROM attribute WHERE set_name = $1", {setName});
        for (int r = 0; r < select.Rows(); ++r) read[select.Text(r, 0)] = select.Text(r, 1);
        return ZebDbOk;
    });
    if (result == ZebDbOk) data = std::move(read);
    return result;
}

ZebDbResult PostgresDatabase::GetDatabaseName(std::wstring& name) {
    return Read("GetDatabaseName", [&] {
        const PgResult select = Exec(conn_, "SELECT value FROM meta WHERE key = 'name'");
        if (select.Rows() == 0) return ZebDbFailed;
        name = select.Text(0, 0);
        return ZebDbOk;
    });
}

}  // namespace zeb_db

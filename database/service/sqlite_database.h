#pragma once

#include <sqlite3.h>

#include <functional>
#include <memory>
#include <string>

#include "database/service/database_collector.h"

namespace zeb_db {

// The database service on one SQLite file. Every operation is one transaction; writers take the
// write lock at the start (BEGIN IMMEDIATE) and wait for each other through the busy timeout.
class SqliteDatabase final : public IDatabaseCollector {
public:
    // Opens or creates the file and brings its schema up to date. Null, with the reason in
    // `error`, when the file is not a sound database of ours; such a file is not written to.
    static std::unique_ptr<SqliteDatabase> Open(const std::wstring& path, std::string& error);
    ~SqliteDatabase() override;

    // Forgets the connection without closing it: a forked child must not close its parent's
    // connection, whose locks belong to the parent.
    void Abandon() { db_ = nullptr; }

    // Runs `body` in one write transaction (what `db copy` needs beyond the service). Returns the
    // body's result, -1 when an SQLite call fails; a non-zero result rolls back.
    int32_t WithTransaction(const char* operation, const std::function<int32_t(sqlite3*)>& body) {
        return Write(operation, [&] { return body(db_); });
    }

    int32_t MaterialExistsInGroup(const std::wstring& material, const std::wstring& group,
                                  int32_t reserved) override;
    ZebDbResult GetMaterialPairs(ZebMaterialPairList& pairs, int32_t reserved) override;
    ZebDbResult AddMaterial(const std::wstring& group, const std::wstring& material,
                            int32_t reserved) override;
    ZebDbResult DeleteMaterial(const std::wstring& group, const std::wstring& material,
                               int32_t reserved) override;
    ZebDbResult UndoAddedMaterials(const ZebMaterialPairList& added, int32_t reserved) override;
    ZebDbResult UndoDeletedMaterials(const ZebMaterialPairList& deleted, int32_t reserved) override;
    ZebDbResult GetMaterialGroups(std::list<std::wstring>& groups, int32_t reserved) override;
    ZebDbResult GetGroupMaterials(const std::wstring& group, std::wstring& materials,
                                  int32_t reserved) override;
    int32_t CheckMaterialUse(const std::wstring& material, const std::wstring& group,
                             int32_t reserved) override;
    ZebDbResult GetFastenerNames(std::list<std::wstring>& names) override;
    ZebDbResult GetAlternateFastenerNames(std::list<std::wstring>& names) override;
    ZebDbResult SetFastenerAttribute(const std::wstring& designation,
                                     const std::wstring& text) override;
    ZebDbResult AddFastenerName(const std::wstring& name) override;
    ZebDbResult DeleteFastenerName(const std::wstring& name) override;
    ZebDbResult RenameFastenerName(const std::wstring& oldName,
                                   const std::wstring& newName) override;
    ZebDbResult GetHardwareList(std::list<ZebHardwareRecord>& records) override;
    ZebDbResult GetInterferenceIgnoreList(std::list<std::wstring>& names) override;
    ZebDbResult SaveInterferenceIgnoreList(const std::list<std::wstring>& names) override;
    ZebDbResult GetAttributeData(const std::wstring& setName,
                                 std::map<std::wstring, std::wstring>& data) override;
    ZebDbResult AddHardwareRecord(ZebHardwareRecord& record) override;
    ZebDbResult UpdateHardwareRecord(const ZebHardwareRecord& record) override;
    ZebDbResult DeleteHardwareRecord(int64_t id) override;
    ZebDbResult GetThreadSizes(std::list<std::wstring>& threads) override;
    ZebDbResult GetDatabaseName(std::wstring& name) override;
    ZebDbResult UndoMaterialChanges(const ZebMaterialPairList& added,
                                    const ZebMaterialPairList& deleted, int32_t reserved) override;
    std::wstring GetDatabasePath() const override { return path_; }

private:
    SqliteDatabase(sqlite3* db, std::wstring path) : db_(db), path_(std::move(path)) {}

    // Runs `body` in one transaction. A failed SQLite call rolls back, is reported on standard
    // error and gives -1; a write whose body returns non-zero is rolled back as well.
    ZebDbResult Read(const char* operation, const std::function<int32_t()>& body);
    ZebDbResult Write(const char* operation, const std::function<int32_t()>& body);
    int32_t Transaction(const char* operation, bool write, const std::function<int32_t()>& body);

    // Shared by the single changes and their undo. 0 stored, 5 already there.
    ZebDbResult InsertMaterial(const std::wstring& group, const std::wstring& material);
    // True when the pair was stored; a group left empty goes too.
    bool RemoveMaterial(const std::wstring& group, const std::wstring& material);
    // A column of texts, in the query's order.
    ZebDbResult ReadTexts(const char* operation, const char* sql, std::list<std::wstring>& texts);

    sqlite3* db_;
    std::wstring path_;
};

}  // namespace zeb_db

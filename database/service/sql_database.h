#pragma once

#include <functional>
#include <memory>
#include <string>

#include "database/service/database_collector.h"
#include "sql_session.h"

namespace zeb_db {

// The database service over one session of either back end. Every operation is one
// transaction: a failed call rolls back, is reported on standard error with the database's own
// message and gives -1; a write whose body returns non-zero is rolled back as well.
class SqlDatabase final : public IDatabaseCollector {
public:
    explicit SqlDatabase(std::unique_ptr<SqlSession> session) : session_(std::move(session)) {}

    // The service on a new session: `prepare` (the back end's own checks and settings) runs
    // first, then with `upgrade` the schema is brought up to date in one write transaction. Null,
    // with the reason in `error`, when either fails.
    static std::unique_ptr<SqlDatabase> Start(std::unique_ptr<SqlSession> session, bool upgrade,
                                              const std::function<void()>& prepare,
                                              std::string& error);

    // Forgets the connection without closing it (see SqlSession::Abandon).
    void Abandon() { session_->Abandon(); }

    // Runs `body` in one write transaction (what `db copy` needs beyond the service). Returns the
    // body's result, -1 when a database call fails; a non-zero result rolls back.
    int32_t WithTransaction(const char* operation,
                            const std::function<int32_t(SqlSession&)>& body) {
        return Transaction(operation, true, [&] { return body(*session_); });
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
    std::wstring GetDatabasePath() const override { return session_->Where(); }

private:
    ZebDbResult Read(const char* operation, const std::function<int32_t()>& body);
    ZebDbResult Write(const char* operation, const std::function<int32_t()>& body);
    int32_t Transaction(const char* operation, bool write, const std::function<int32_t()>& body);

    // Shared by the single changes and their undo. 0 stored, 5 already there.
    ZebDbResult InsertMaterial(const std::wstring& group, const std::wstring& material);
    // Takes back the pairs added and stores again the pairs deleted, in one transaction.
    ZebDbResult Undo(const char* operation, const ZebMaterialPairList& added,
                     const ZebMaterialPairList& deleted);
    // True when the pair was stored; a group left empty goes too.
    bool RemoveMaterial(const std::wstring& group, const std::wstring& material);
    // A column of texts, in the query's order.
    ZebDbResult ReadTexts(const char* operation, const char* sql, std::list<std::wstring>& texts);
    // Runs one statement with `key` and tells whether it gave a row.
    bool Exists(const char* sql, const std::wstring& key);
    int64_t GroupId(const std::wstring& group);

    std::unique_ptr<SqlSession> session_;
};

}  // namespace zeb_db

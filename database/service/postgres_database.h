#pragma once

#include <libpq-fe.h>

#include <functional>
#include <memory>
#include <string>

#include "database/service/database_collector.h"

namespace zeb_db {

// The database service on a PostgreSQL server, for a team that shares one catalogue. Every
// operation is one transaction on one session; the unique keys on the case-folded names decide
// between two engineers adding the same name at once. A session lost to the server fails the
// operation that finds it lost, and the next operation connects again.
class PostgresDatabase final : public IDatabaseCollector {
public:
    // Connects to `conninfo` (a libpq URI or key=value string) and, with `upgrade`, brings the
    // schema up to date. Null, with the server's message in `error`, when the server cannot be
    // reached within the connect timeout or its database is not one of ours.
    static std::unique_ptr<PostgresDatabase> Open(const std::string& conninfo, std::string& error,
                                                  bool upgrade = true);
    ~PostgresDatabase() override;

    // Forgets the session without closing it: closing in a forked child would end the parent's
    // session, whose socket the child shares.
    void Abandon() { conn_ = nullptr; }

    // Runs `body` in one transaction on this session (what `db copy` needs beyond the service).
    // Returns the body's result, -1 when a server call fails; a non-zero result rolls back.
    int32_t WithTransaction(const char* operation, const std::function<int32_t(PGconn*)>& body);

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
    // The connection string without its password.
    ZebDbResult UndoMaterialChanges(const ZebMaterialPairList& added,
                                    const ZebMaterialPairList& deleted, int32_t reserved) override;
    std::wstring GetDatabasePath() const override { return display_; }

private:
    PostgresDatabase(PGconn* conn, std::wstring display)
        : conn_(conn), display_(std::move(display)) {}

    // Runs `body` in one transaction. A failed server call rolls back, is reported on standard
    // error with the server's message and gives -1; a write whose body returns non-zero is
    // rolled back as well.
    ZebDbResult Read(const char* operation, const std::function<int32_t()>& body);
    ZebDbResult Write(const char* operation, const std::function<int32_t()>& body);
    int32_t Transaction(const char* operation, bool write, const std::function<int32_t()>& body);
    // A session the server dropped is opened again; false (reported) when that fails.
    bool Reconnect(const char* operation);

    ZebDbResult InsertMaterial(const std::wstring& group, const std::wstring& material);
    bool RemoveMaterial(const std::wstring& group, const std::wstring& material);
    ZebDbResult ReadTexts(const char* operation, const char* sql, std::list<std::wstring>& texts);

    PGconn* conn_;
    std::wstring display_;
};

}  // namespace zeb_db

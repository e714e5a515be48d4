#pragma once

#include <set>
#include <string>
#include <vector>

#include "database/service/data_helper.h"

// The database service of the test's folder with failures on demand: an operation named in
// `failing` answers ZebDbFailed (-1 for the two questions) without reaching the database, every
// other one goes through. While it lives it stands in for the service, so the dialogs use it.
class FailingDatabase final : public IDatabaseCollector {
public:
    FailingDatabase() : real_(zeb_db::ZEBDataHelper::getInstance()) {
        previous_ = zeb_db::ZEBDataHelper::Substitute(this);
    }
    ~FailingDatabase() override { zeb_db::ZEBDataHelper::Substitute(previous_); }
    FailingDatabase(const FailingDatabase&) = delete;
    FailingDatabase& operator=(const FailingDatabase&) = delete;

    std::set<std::string> failing;
    // Every operation asked for, in order, failed or not.
    std::vector<std::string> calls;

    int32_t MaterialExistsInGroup(const std::wstring& m, const std::wstring& g,
                                  int32_t r) override {
        return Fails("MaterialExistsInGroup") ? 0 : real_->MaterialExistsInGroup(m, g, r);
    }
    ZebDbResult GetMaterialPairs(ZebMaterialPairList& pairs, int32_t r) override {
        return Pass("GetMaterialPairs", [&] { return real_->GetMaterialPairs(pairs, r); });
    }
    ZebDbResult AddMaterial(const std::wstring& g, const std::wstring& m, int32_t r) override {
        return Pass("AddMaterial", [&] { return real_->AddMaterial(g, m, r); });
    }
    ZebDbResult DeleteMaterial(const std::wstring& g, const std::wstring& m, int32_t r) override {
        return Pass("DeleteMaterial", [&] { return real_->DeleteMaterial(g, m, r); });
    }
    ZebDbResult UndoAddedMaterials(const ZebMaterialPairList& added, int32_t r) override {
        return Pass("UndoAddedMaterials", [&] { return real_->UndoAddedMaterials(added, r); });
    }
    ZebDbResult UndoDeletedMaterials(const ZebMaterialPairList& deleted, int32_t r) override {
        return Pass("UndoDeletedMaterials",
                    [&] { return real_->UndoDeletedMaterials(deleted, r); });
    }
    ZebDbResult UndoMaterialChanges(const ZebMaterialPairList& added,
                                    const ZebMaterialPairList& deleted, int32_t r) override {
        return Pass("UndoMaterialChanges",
                    [&] { return real_->UndoMaterialChanges(added, deleted, r); });
    }
    ZebDbResult GetMaterialGroups(std::list<std::wstring>& groups, int32_t r) override {
        return Pass("GetMaterialGroups", [&] { return real_->GetMaterialGroups(groups, r); });
    }
    ZebDbResult GetGroupMaterials(const std::wstring& g, std::wstring& materials,
                                  int32_t r) override {
        return Pass("GetGroupMaterials", [&] { return real_->GetGroupMaterials(g, materials, r); });
    }
    int32_t CheckMaterialUse(const std::wstring& m, const std::wstring& g, int32_t r) override {
        return Fails("CheckMaterialUse") ? -1 : real_->CheckMaterialUse(m, g, r);
    }
    ZebDbResult GetFastenerNames(std::list<std::wstring>& names) override {
        return Pass("GetFastenerNames", [&] { return real_->GetFastenerNames(names); });
    }
    ZebDbResult GetAlternateFastenerNames(std::list<std::wstring>& names) override {
        return Pass("GetAlternateFastenerNames",
                    [&] { return real_->GetAlternateFastenerNames(names); });
    }
    ZebDbResult SetFastenerAttribute(const std::wstring& d, const std::wstring& t) override {
        return Pass("SetFastenerAttribute", [&] { return real_->SetFastenerAttribute(d, t); });
    }
    ZebDbResult AddFastenerName(const std::wstring& name) override {
        return Pass("AddFastenerName", [&] { return real_->AddFastenerName(name); });
    }
    ZebDbResult DeleteFastenerName(const std::wstring& name) override {
        return Pass("DeleteFastenerName", [&] { return real_->DeleteFastenerName(name); });
    }
    ZebDbResult RenameFastenerName(const std::wstring& o, const std::wstring& n) override {
        return Pass("RenameFastenerName", [&] { return real_->RenameFastenerName(o, n); });
    }
    ZebDbResult GetHardwareList(std::list<ZebHardwareRecord>& records) override {
        return Pass("GetHardwareList", [&] { return real_->GetHardwareList(records); });
    }
    ZebDbResult GetInterferenceIgnoreList(std::list<std::wstring>& names) override {
        return Pass("GetInterferenceIgnoreList",
                    [&] { return real_->GetInterferenceIgnoreList(names); });
    }
    ZebDbResult SaveInterferenceIgnoreList(const std::list<std::wstring>& names) override {
        return Pass("SaveInterferenceIgnoreList",
                    [&] { return real_->SaveInterferenceIgnoreList(names); });
    }
    ZebDbResult GetAttributeData(const std::wstring& set,
                                 std::map<std::wstring, std::wstring>& data) override {
        return Pass("GetAttributeData", [&] { return real_->GetAttributeData(set, data); });
    }
    ZebDbResult AddHardwareRecord(ZebHardwareRecord& record) override {
        return Pass("AddHardwareRecord", [&] { return real_->AddHardwareRecord(record); });
    }
    ZebDbResult UpdateHardwareRecord(const ZebHardwareRecord& record) override {
        return Pass("UpdateHardwareRecord", [&] { return real_->UpdateHardwareRecord(record); });
    }
    ZebDbResult DeleteHardwareRecord(int64_t id) override {
        return Pass("DeleteHardwareRecord", [&] { return real_->DeleteHardwareRecord(id); });
    }
    ZebDbResult GetThreadSizes(std::list<std::wstring>& threads) override {
        return Pass("GetThreadSizes", [&] { return real_->GetThreadSizes(threads); });
    }
    ZebDbResult GetDatabaseName(std::wstring& name) override {
        return Pass("GetDatabaseName", [&] { return real_->GetDatabaseName(name); });
    }
    std::wstring GetDatabasePath() const override { return real_->GetDatabasePath(); }

private:
    bool Fails(const char* operation) {
        calls.push_back(operation);
        return failing.count(operation) > 0;
    }
    template <class Call>
    ZebDbResult Pass(const char* operation, Call&& call) {
        return Fails(operation) ? ZebDbFailed : call();
    }

    IDatabaseCollector* real_;
    IDatabaseCollector* previous_ = nullptr;
};

#pragma once

// The database service: fastener names, thread attributes, material groups, hardware records and
// the interference ignore list, shared by every engineer who points at the same database folder.
// Obtain it with zeb_db::ZEBDataHelper::getInstance() (database/service/data_helper.h) each time it
// is needed; null means there is no usable database and the caller skips its database work.
//
// Results: ZebDbOk (0) success, ZebDbFailed (-1) failure, ZebDbExists (5) already exists; a
// result cannot be dropped unread. Every change is one transaction: it is either stored whole or
// not at all. Names are matched without regard to letter case and kept in
// the case they were first stored in.

#include <cstdint>
#include <list>
#include <map>
#include <string>
#include <utility>
#include <vector>

enum [[nodiscard]] ZebDbResult : int32_t{ZebDbOk = 0, ZebDbFailed = -1, ZebDbExists = 5};

// (group, material)
using ZebMaterialPair = std::pair<std::wstring, std::wstring>;
using ZebMaterialPairList = std::vector<ZebMaterialPair>;

// The attribute set that maps a fastener designation to its thread text ("M8x1.25").
inline constexpr wchar_t kFastenerThreadAttributeSet[] = L"AttributeDataFastenerThread";

// One record of the hardware (fastener) database.
struct ZebHardwareRecord {
    int64_t id = 0;            // given by the database; 0 for a record not yet stored
    std::wstring designation;  // "ISO 4017 M8x20", unique without regard to case
    std::wstring kind;         // "Hexagon head screw", "Hexagon nut", ...
    std::wstring standard;     // "ISO 4017"
    std::wstring thread;       // "M8x1.25"
    double length = 0.0;       // nominal length in millimetres, 0 for nuts and washers
    std::wstring material;     // a material name of the material database, or empty

    bool operator==(const ZebHardwareRecord&) const = default;
};

class IDatabaseCollector {
public:
    virtual ~IDatabaseCollector() = default;

    // ---- materials. The trailing int is reserved; callers pass 0. ----

    // Non-zero when `group` holds `material`.
    [[nodiscard]] virtual int32_t MaterialExistsInGroup(const std::wstring& material,
                                                        const std::wstring& group,
                                                        int32_t reserved) = 0;
    // Every (group, material) pair, groups and materials in alphabetical order.
    virtual ZebDbResult GetMaterialPairs(ZebMaterialPairList& pairs, int32_t reserved) = 0;
    // Adds `material` to `group`, creating the group when it is new. 5 when the group already
    // holds the material; -1 for an empty name or a failed write.
    virtual ZebDbResult AddMaterial(const std::wstring& group, const std::wstring& material,
                                    int32_t reserved) = 0;
    // Removes `material` from `group`; a group loses its last material and goes with it.
    // -1 when the pair is not stored or the write fails.
    virtual ZebDbResult DeleteMaterial(const std::wstring& group, const std::wstring& material,
                                       int32_t reserved) = 0;
    // Takes back pairs added by AddMaterial (pairs no longer stored are passed over).
    virtual ZebDbResult UndoAddedMaterials(const ZebMaterialPairList& added, int32_t reserved) = 0;
    // Stores again pairs removed by DeleteMaterial, in the letter case given.
    virtual ZebDbResult UndoDeletedMaterials(const ZebMaterialPairList& deleted,
                                             int32_t reserved) = 0;
    // Group names in alphabetical order.
    virtual ZebDbResult GetMaterialGroups(std::list<std::wstring>& groups, int32_t reserved) = 0;
    // The group's materials in alphabetical order joined by ";" (empty for an unknown group).
    virtual ZebDbResult GetGroupMaterials(const std::wstring& group, std::wstring& materials,
                                          int32_t reserved) = 0;
    // Whether deleting would take a material away from hardware records that name it: 0 when a
    // hardware record is made of `material` (with an empty material: of any material of
    // `group`), so the caller warns before the deletion; 1 when nothing uses it; -1 on failure.
    [[nodiscard]] virtual int32_t CheckMaterialUse(const std::wstring& material,
                                                   const std::wstring& group, int32_t reserved) = 0;

    // ---- fastener names ----

    virtual ZebDbResult GetFastenerNames(std::list<std::wstring>& names) = 0;
    // The second designation of each fastener that has one ("DIN 933 M8" beside "ISO 4017 M8").
    virtual ZebDbResult GetAlternateFastenerNames(std::list<std::wstring>& names) = 0;
    // Sets the thread text of a designation in the "AttributeDataFastenerThread" set.
    virtual ZebDbResult SetFastenerAttribute(const std::wstring& designation,
                                             const std::wstring& text) = 0;
    // Stores `name` as given. 5 when it exists in any letter case; -1 for an empty name.
    virtual ZebDbResult AddFastenerName(const std::wstring& name) = 0;
    // -1 when no name matches without regard to case.
    virtual ZebDbResult DeleteFastenerName(const std::wstring& name) = 0;
    // -1 when `oldName` is not stored or `newName` is empty or is another stored name; a change
    // of letter case alone is a rename.
    virtual ZebDbResult RenameFastenerName(const std::wstring& oldName,
                                           const std::wstring& newName) = 0;

    // ---- hardware records ----

    // Every record in designation order (the list is emptied first).
    virtual ZebDbResult GetHardwareList(std::list<ZebHardwareRecord>& records) = 0;

    // ---- interference ignore list ----

    virtual ZebDbResult GetInterferenceIgnoreList(std::list<std::wstring>& names) = 0;
    // Replaces the whole list; it reads back in this order.
    virtual ZebDbResult SaveInterferenceIgnoreList(const std::list<std::wstring>& names) = 0;

    // ---- attribute sets ----

    // Fills `data` (emptied first) with designation -> text of the set. An unknown set is empty.
    virtual ZebDbResult GetAttributeData(const std::wstring& setName,
                                         std::map<std::wstring, std::wstring>& data) = 0;

    // ---- editing of hardware records (the hardware database dialog) ----

    // Stores a new record and sets its id. 5 when the designation exists; -1 for an empty
    // designation.
    virtual ZebDbResult AddHardwareRecord(ZebHardwareRecord& record) = 0;
    // Replaces the stored record with the same id. 5 when the new designation belongs to another
    // record; -1 when the id is not stored.
    virtual ZebDbResult UpdateHardwareRecord(const ZebHardwareRecord& record) = 0;
    virtual ZebDbResult DeleteHardwareRecord(int64_t id) = 0;
    // Thread texts ("M8x1.25") of the thread size table, smallest first.
    virtual ZebDbResult GetThreadSizes(std::list<std::wstring>& threads) = 0;

    // ---- the database itself ----

    // The display name of the database ("Vantor Database" unless the administrators set one).
    virtual ZebDbResult GetDatabaseName(std::wstring& name) = 0;
    // The database file in use.
    virtual std::wstring GetDatabasePath() const = 0;

    // ---- after the operations above, so that their places stay ----

    // Takes back pairs added and stores again pairs deleted (as UndoAddedMaterials and
    // UndoDeletedMaterials do) in one transaction: both or neither.
    virtual ZebDbResult UndoMaterialChanges(const ZebMaterialPairList& added,
                                            const ZebMaterialPairList& deleted,
                                            int32_t reserved) = 0;
};

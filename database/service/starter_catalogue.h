#pragma once

#include <string>
#include <vector>

#include "database/service/database_collector.h"

namespace zeb_db {

// The whole content of a database in the order each table reads back (fastener names, threads,
// groups, materials and hardware records in the order they were stored; attributes by set and
// designation key; the ignore list by position). The starter catalogue of a new database is one;
// `db copy` moves one between databases.
struct CatalogueData {
    struct Thread {
        std::wstring size;  // "M8"
        double diameter = 0.0;
        double pitch = 0.0;
        std::wstring text;  // "M8x1.25"
        bool operator==(const Thread&) const = default;
    };
    struct Fastener {
        std::wstring name;
        std::wstring alternate;  // empty when the fastener has no second designation
        bool operator==(const Fastener&) const = default;
    };
    struct Attribute {
        std::wstring set;
        std::wstring designation;
        std::wstring value;
        bool operator==(const Attribute&) const = default;
    };
    struct Group {
        std::wstring name;
        std::vector<std::wstring> materials;
        bool operator==(const Group&) const = default;
    };

    std::wstring name;  // the database's display name
    std::vector<Thread> threads;
    std::vector<Fastener> fasteners;
    std::vector<Attribute> attributes;
    std::vector<Group> groups;
    std::vector<ZebHardwareRecord> hardware;  // ids as stored; 0 in the starter catalogue
    std::vector<std::wstring> ignore;

    bool operator==(const CatalogueData&) const = default;
};

// What a new database holds: metric coarse threads, three fastener series with their older
// national designations and thread attributes, common material groups and a few hardware
// records.
CatalogueData StarterCatalogue();

// True when `data` is the starter catalogue, whatever ids its hardware records were given.
bool IsStarterCatalogue(CatalogueData data);

}  // namespace zeb_db

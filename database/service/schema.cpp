#include "schema.h"

#include <map>
#include <string>

#include "database/service/database_collector.h"
#include "framework/case_fold.h"
#include "sqlite_statement.h"
#include "starter_catalogue.h"

namespace zeb_db {
namespace {

constexpr const char* kSqliteSchemaV1 = R"(
CREATE TABLE meta(key TEXT PRIMARY KEY, value TEXT NOT NULL);
CREATE TABLE fastener_name(
    id INTEGER PRIMARY KEY,
    name TEXT NOT NULL,
    name_key TEXT NOT NULL UNIQUE,
    alternate TEXT NOT NULL DEFAULT '');
CREATE TABLE thread_size(
    id INTEGER PRIMARY KEY,
    size TEXT NOT NULL UNIQUE,
    diameter REAL NOT NULL,
    pitch REAL NOT NULL,
    text TEXT NOT NULL);
CREATE TABLE attribute(
    set_name TEXT NOT NULL,
    designation TEXT NOT NULL,
    designation_key TEXT NOT NULL,
    value TEXT NOT NULL,
    PRIMARY KEY(set_name, designation_key));
CREATE TABLE material_group(
    id INTEGER PRIMARY KEY,
    name TEXT NOT NULL,
    name_key TEXT NOT NULL UNIQUE);
CREATE TABLE material(
    id INTEGER PRIMARY KEY,
    group_id INTEGER NOT NULL REFERENCES material_group(id),
    name TEXT NOT NULL,
    name_key TEXT NOT NULL,
    UNIQUE(group_id, name_key));
CREATE TABLE hardware(
    id INTEGER PRIMARY KEY,
    designation TEXT NOT NULL,
    designation_key TEXT NOT NULL UNIQUE,
    kind TEXT NOT NULL,
    standard TEXT NOT NULL,
    thread TEXT NOT NULL,
    length REAL NOT NULL,
    material TEXT NOT NULL,
    material_key TEXT NOT NULL);
CREATE INDEX hardware_material ON hardware(material_key);
CREATE TABLE ignore_item(position INTEGER PRIMARY KEY, name TEXT NOT NULL);
)";

int UserVersion(sqlite3* db) {
    Statement version(db, "PRAGMA user_version");
    return version.Step() ? static_cast<int>(version.Int(0)) : 0;
}

}  // namespace

void UpgradeSchema(sqlite3* db) {
    const int version = UserVersion(db);
    if (version > kSchemaVersion)
        throw DbError("the database was written by a newer version (schema " +
                      std::to_string(version) + "); it is left untouched");
    if (version == kSchemaVersion) return;
    if (version == 0) {
        // Another program's database: ours start from an empty file.
        Statement tables(db, "SELECT count(*) FROM sqlite_master");
        if (tables.Step() && tables.Int(0) > 0)
            throw DbError("the file holds another program's database; it is left untouched");
    }
    // One step per version; a database is carried through every step it has not had yet.
    if (version < 1) {
        Execute(db, kSqliteSchemaV1);
        ReplaceCatalogue(db, StarterCatalogue());
    }
    Execute(db, ("PRAGMA user_version = " + std::to_string(kSchemaVersion)).c_str());
}

CatalogueData ReadCatalogue(sqlite3* db) {
    CatalogueData data;
    Statement name(db, "SELECT value FROM meta WHERE key = 'name'");
    if (name.Step()) data.name = name.Text(0);
    Statement threads(db, "SELECT size, diameter, pitch, text FROM thread_size ORDER BY id");
    while (threads.Step())
        data.threads.push_back(
            {threads.Text(0), threads.Real(1), threads.Real(2), threads.Text(3)});
    Statement names(db, "SELECT name, alternate FROM fastener_name ORDER BY id");
    while (names.Step()) data.fasteners.push_back({names.Text(0), names.Text(1)});
    Statement attributes(
        db,
        "SELECT set_name, designation, value FROM attribute ORDER BY set_name, designation_key");
    while (attributes.Step())
        data.attributes.push_back({attributes.Text(0), attributes.Text(1), attributes.Text(2)});
    Statement groups(db, "SELECT id, name FROM material_group ORDER BY id");
    std::map<int64_t, size_t> groupIndex;
    while (groups.Step()) {
        groupIndex[groups.Int(0)] = data.groups.size();
        data.groups.push_back({groups.Text(1), {}});
    }
    Statement materials(db, "SELECT group_id, name FROM material ORDER BY id");
    while (materials.Step()) {
        const auto group = groupIndex.find(materials.Int(0));
        if (group == groupIndex.end()) throw DbError("a material belongs to no group");
        data.groups[group->second].materials.push_back(materials.Text(1));
    }
    Statement hardware(db,
                       "SELECT id, designation, kind, standard, thread, length, material FROM "
                       "hardware ORDER BY id");
    while (hardware.Step())
        data.hardware.push_back({hardware.Int(0), hardware.Text(1), hardware.Text(2),
                                 hardware.Text(3), hardware.Text(4), hardware.Real(5),
                                 hardware.Text(6)});
    Statement ignore(db, "SELECT name FROM ignore_item ORDER BY position");
    while (ignore.Step()) data.ignore.push_back(ignore.Text(0));
    return data;
}

void ReplaceCatalogue(sqlite3* db, const CatalogueData& data) {
    Execute(db,
            "DELETE FROM ignore_item; DELETE FROM hardware; DELETE FROM material;"
            " DELETE FROM material_group; DELETE FROM attribute; DELETE FROM fastener_name;"
            " DELETE FROM thread_size; DELETE FROM meta WHERE key = 'name'");
    Statement meta(db, "INSERT INTO meta(key, value) VALUES('name', ?1)");
    meta.Bind(1, data.name).Run();

    Statement thread(db,
                     "INSERT INTO thread_size(size, diameter, pitch, text) VALUES(?1,?2,?3,?4)");
    for (const CatalogueData::Thread& t : data.threads) {
        thread.Reset();
        thread.Bind(1, t.size).Bind(2, t.diameter).Bind(3, t.pitch).Bind(4, t.text).Run();
    }
    Statement name(db, "INSERT INTO fastener_name(name, name_key, alternate) VALUES(?1,?2,?3)");
    for (const CatalogueData::Fastener& f : data.fasteners) {
        name.Reset();
        name.Bind(1, f.name).Bind(2, ZebFoldCase(f.name)).Bind(3, f.alternate).Run();
    }
    Statement attribute(
        db,
        "INSERT INTO attribute(set_name, designation, designation_key, value) VALUES(?1,?2,?3,?4)");
    for (const CatalogueData::Attribute& a : data.attributes) {
        attribute.Reset();
        attribute.Bind(1, a.set)
            .Bind(2, a.designation)
            .Bind(3, ZebFoldCase(a.designation))
            .Bind(4, a.value)
            .Run();
    }

    Statement group(db, "INSERT INTO material_group(name, name_key) VALUES(?1, ?2)");
    Statement material(db, "INSERT INTO material(group_id, name, name_key) VALUES(?1, ?2, ?3)");
    for (const CatalogueData::Group& g : data.groups) {
        group.Reset();
        group.Bind(1, g.name).Bind(2, ZebFoldCase(g.name)).Run();
        const int64_t groupId = sqlite3_last_insert_rowid(db);
        for (const std::wstring& m : g.materials) {
            material.Reset();
            material.Bind(1, groupId).Bind(2, m).Bind(3, ZebFoldCase(m)).Run();
        }
    }

    // Hardware records keep their ids (0: a new one): other data may refer to them.
    Statement hardware(
        db,
        "INSERT INTO hardware(id, designation, designation_key, kind, standard, thread, length,"
        " material, material_key) VALUES(nullif(?1, 0),?2,?3,?4,?5,?6,?7,?8,?9)");
    for (const ZebHardwareRecord& h : data.hardware) {
        hardware.Reset();
        hardware.Bind(1, h.id)
            .Bind(2, h.designation)
            .Bind(3, ZebFoldCase(h.designation))
            .Bind(4, h.kind)
            .Bind(5, h.standard)
            .Bind(6, h.thread)
            .Bind(7, h.length)
            .Bind(8, h.material)
            .Bind(9, ZebFoldCase(h.material))
            .Run();
    }
    Statement ignore(db, "INSERT INTO ignore_item(position, name) VALUES(?1, ?2)");
    int64_t position = 0;
    for (const std::wstring& item : data.ignore) {
        ignore.Reset();
        ignore.Bind(1, ++position).Bind(2, item).Run();
    }
}

}  // namespace zeb_db

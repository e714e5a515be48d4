#include "schema.h"

#include <map>
#include <string>

#include "database/service/database_collector.h"
#include "framework/case_fold.h"

namespace zeb_db {
namespace {

// {id}, {integer}, {real} and {key} stand for the back end's column types.
constexpr const char* kSchemaV1 = R"(
CREATE TABLE meta(key {key} PRIMARY KEY, value TEXT NOT NULL);
CREATE TABLE fastener_name(
    id {id},
    name TEXT NOT NULL,
    name_key {key} NOT NULL UNIQUE,
    alternate TEXT NOT NULL DEFAULT '');
CREATE TABLE thread_size(
    id {id},
    size {key} NOT NULL UNIQUE,
    diameter {real} NOT NULL,
    pitch {real} NOT NULL,
    text TEXT NOT NULL);
CREATE TABLE attribute(
    set_name {key} NOT NULL,
    designation TEXT NOT NULL,
    designation_key {key} NOT NULL,
    value TEXT NOT NULL,
    PRIMARY KEY(set_name, designation_key));
CREATE TABLE material_group(
    id {id},
    name TEXT NOT NULL,
    name_key {key} NOT NULL UNIQUE);
CREATE TABLE material(
    id {id},
    group_id {integer} NOT NULL REFERENCES material_group(id),
    name TEXT NOT NULL,
    name_key {key} NOT NULL,
    UNIQUE(group_id, name_key));
CREATE TABLE hardware(
    id {id},
    designation TEXT NOT NULL,
    designation_key {key} NOT NULL UNIQUE,
    kind TEXT NOT NULL,
    standard TEXT NOT NULL,
    thread TEXT NOT NULL,
    length {real} NOT NULL,
    material TEXT NOT NULL,
    material_key {key} NOT NULL);
CREATE INDEX hardware_material ON hardware(material_key);
CREATE TABLE ignore_item(position {integer} PRIMARY KEY, name TEXT NOT NULL);
)";

// `text` with each {name} of `values` replaced.
std::string Filled(std::string text,
                   std::initializer_list<std::pair<const char*, std::string>> values) {
    for (const auto& [name, value] : values) {
        const std::string token = std::string("{") + name + "}";
        for (size_t at = text.find(token); at != std::string::npos;
             at = text.find(token, at + value.size()))
            text.replace(at, token.size(), value);
    }
    return text;
}

int64_t QueryInt(SqlSession& session, const char* sql) {
    const auto query = session.Prepare(sql);
    return query->Step() ? query->Int(0) : 0;
}

int StoredVersion(SqlSession& session) {
    const SqlDialect& dialect = session.Dialect();
    if (QueryInt(session, dialect.versionStored) != 0)
        if (const int64_t version = QueryInt(session, dialect.readVersion); version != 0)
            return static_cast<int>(version);
    // Another program's database: ours start from an empty one.
    if (QueryInt(session, dialect.countTables) > 0) throw DbError(dialect.foreignDatabase);
    return 0;
}

}  // namespace

void UpgradeSchema(SqlSession& session) {
    const SqlDialect& dialect = session.Dialect();
    if (dialect.schemaLock) session.Execute(dialect.schemaLock);
    const int version = StoredVersion(session);
    if (version > kSchemaVersion)
        throw DbError("the database was written by a newer version (schema " +
                      std::to_string(version) + "); it is left untouched");
    if (version == kSchemaVersion) return;
    // One step per version; a database is carried through every step it has not had yet.
    if (version < 1) {
        session.Execute(Filled(kSchemaV1, {{"id", dialect.idColumn},
                                           {"integer", dialect.integer},
                                           {"real", dialect.real},
                                           {"key", dialect.key}})
                            .c_str());
        ReplaceCatalogue(session, StarterCatalogue());
    }
    session.Execute(
        Filled(dialect.writeVersion, {{"version", std::to_string(kSchemaVersion)}}).c_str());
}

SqlQuery& BindHardware(SqlQuery& query, const ZebHardwareRecord& record) {
    return query.Bind(1, record.designation)
        .Bind(2, ZebFoldCase(record.designation))
        .Bind(3, record.kind)
        .Bind(4, record.standard)
        .Bind(5, record.thread)
        .Bind(6, record.length)
        .Bind(7, record.material)
        .Bind(8, ZebFoldCase(record.material));
}

CatalogueData ReadCatalogue(SqlSession& session) {
    CatalogueData data;
    const auto name = session.Prepare("SELECT value FROM meta WHERE key = 'name'");
    if (name->Step()) data.name = name->Text(0);
    const auto threads =
        session.Prepare("SELECT size, diameter, pitch, text FROM thread_size ORDER BY id");
    while (threads->Step())
        data.threads.push_back(
            {threads->Text(0), threads->Real(1), threads->Real(2), threads->Text(3)});
    const auto names = session.Prepare("SELECT name, alternate FROM fastener_name ORDER BY id");
    while (names->Step()) data.fasteners.push_back({names->Text(0), names->Text(1)});
    const auto attributes = session.Prepare(
        "SELECT set_name, designation, value FROM attribute ORDER BY set_name, designation_key");
    while (attributes->Step())
        data.attributes.push_back({attributes->Text(0), attributes->Text(1), attributes->Text(2)});
    const auto groups = session.Prepare("SELECT id, name FROM material_group ORDER BY id");
    std::map<int64_t, size_t> groupIndex;
    while (groups->Step()) {
        groupIndex[groups->Int(0)] = data.groups.size();
        data.groups.push_back({groups->Text(1), {}});
    }
    const auto materials = session.Prepare("SELECT group_id, name FROM material ORDER BY id");
    while (materials->Step()) {
        const auto group = groupIndex.find(materials->Int(0));
        if (group == groupIndex.end()) throw DbError("a material belongs to no group");
        data.groups[group->second].materials.push_back(materials->Text(1));
    }
    const auto hardware = session.Prepare(
        "SELECT id, designation, kind, standard, thread, length, material FROM hardware"
        " ORDER BY id");
    while (hardware->Step())
        data.hardware.push_back({hardware->Int(0), hardware->Text(1), hardware->Text(2),
                                 hardware->Text(3), hardware->Text(4), hardware->Real(5),
                                 hardware->Text(6)});
    const auto ignore = session.Prepare("SELECT name FROM ignore_item ORDER BY position");
    while (ignore->Step()) data.ignore.push_back(ignore->Text(0));
    return data;
}

void ReplaceCatalogue(SqlSession& session, const CatalogueData& data) {
    session.Execute(
        "DELETE FROM ignore_item; DELETE FROM hardware; DELETE FROM material;"
        " DELETE FROM material_group; DELETE FROM attribute; DELETE FROM fastener_name;"
        " DELETE FROM thread_size; DELETE FROM meta WHERE key = 'name'");
    session.Prepare("INSERT INTO meta(key, value) VALUES('name', ?1)")->Bind(1, data.name).Run();

    const auto thread = session.Prepare(
        "INSERT INTO thread_size(size, diameter, pitch, text) VALUES(?1, ?2, ?3, ?4)");
    for (const CatalogueData::Thread& t : data.threads) {
        thread->Reset();
        thread->Bind(1, t.size).Bind(2, t.diameter).Bind(3, t.pitch).Bind(4, t.text).Run();
    }
    const auto name =
        session.Prepare("INSERT INTO fastener_name(name, name_key, alternate) VALUES(?1, ?2, ?3)");
    for (const CatalogueData::Fastener& f : data.fasteners) {
        name->Reset();
        name->Bind(1, f.name).Bind(2, ZebFoldCase(f.name)).Bind(3, f.alternate).Run();
    }
    const auto attribute = session.Prepare(
        "INSERT INTO attribute(set_name, designation, designation_key, value)"
        " VALUES(?1, ?2, ?3, ?4)");
    for (const CatalogueData::Attribute& a : data.attributes) {
        attribute->Reset();
        attribute->Bind(1, a.set)
            .Bind(2, a.designation)
            .Bind(3, ZebFoldCase(a.designation))
            .Bind(4, a.value)
            .Run();
    }

    const auto group =
        session.Prepare("INSERT INTO material_group(name, name_key) VALUES(?1, ?2) RETURNING id");
    const auto material =
        session.Prepare("INSERT INTO material(group_id, name, name_key) VALUES(?1, ?2, ?3)");
    for (const CatalogueData::Group& g : data.groups) {
        group->Reset();
        group->Bind(1, g.name).Bind(2, ZebFoldCase(g.name));
        if (!group->Step()) throw DbError("a material group was not stored");
        const int64_t groupId = group->Int(0);
        // The group's statement ends before its materials are stored.
        group->Reset();
        for (const std::wstring& m : g.materials) {
            material->Reset();
            material->Bind(1, groupId).Bind(2, m).Bind(3, ZebFoldCase(m)).Run();
        }
    }

    // Hardware records keep their ids (0: a new one): other data may refer to them.
    const auto kept = session.Prepare(
        "INSERT INTO hardware(id, designation, designation_key, kind, standard, thread, length,"
        " material, material_key) VALUES(?9, ?1, ?2, ?3, ?4, ?5, ?6, ?7, ?8)");
    const auto fresh = session.Prepare(
        "INSERT INTO hardware(designation, designation_key, kind, standard, thread, length,"
        " material, material_key) VALUES(?1, ?2, ?3, ?4, ?5, ?6, ?7, ?8)");
    for (const ZebHardwareRecord& h : data.hardware) {
        SqlQuery& insert = h.id != 0 ? *kept : *fresh;
        insert.Reset();
        BindHardware(insert, h);
        if (h.id != 0) insert.Bind(9, h.id);
        insert.Run();
    }
    const auto ignore = session.Prepare("INSERT INTO ignore_item(position, name) VALUES(?1, ?2)");
    int64_t position = 0;
    for (const std::wstring& item : data.ignore) {
        ignore->Reset();
        ignore->Bind(1, ++position).Bind(2, item).Run();
    }
    if (session.Dialect().afterExplicitIds) session.Execute(session.Dialect().afterExplicitIds);
}

}  // namespace zeb_db

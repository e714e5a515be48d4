#include "schema.h"

#include <string>

#include "database/service/database_collector.h"
#include "framework/case_fold.h"
#include "sqlite_statement.h"

namespace zeb_db {
namespace {

constexpr const char* kSchemaV1 = R"(
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

struct ThreadSize {
    const wchar_t* size;
    double diameter;
    double pitch;
    const wchar_t* text;
};

// Metric coarse threads, ISO 261.
constexpr ThreadSize kThreads[] = {
    {L"M3", 3, 0.5, L"M3x0.5"},     {L"M4", 4, 0.7, L"M4x0.7"},     {L"M5", 5, 0.8, L"M5x0.8"},
    {L"M6", 6, 1.0, L"M6x1"},       {L"M8", 8, 1.25, L"M8x1.25"},   {L"M10", 10, 1.5, L"M10x1.5"},
    {L"M12", 12, 1.75, L"M12x1.75"}, {L"M16", 16, 2.0, L"M16x2"},   {L"M20", 20, 2.5, L"M20x2.5"},
    {L"M24", 24, 3.0, L"M24x3"},
};

struct FastenerSeries {
    const wchar_t* standard;
    const wchar_t* alternate;  // the older national designation of the same part
};

constexpr FastenerSeries kSeries[] = {
    {L"ISO 4017", L"DIN 933"},  // hexagon head screw, fully threaded
    {L"ISO 4762", L"DIN 912"},  // hexagon socket head cap screw
    {L"ISO 4032", L"DIN 934"},  // hexagon nut
};

struct MaterialGroup {
    const wchar_t* group;
    std::initializer_list<const wchar_t*> materials;
};

const MaterialGroup kMaterials[] = {
    {L"Steels", {L"S235JR", L"S355J2", L"C45", L"42CrMo4", L"11SMnPb30"}},
    {L"Stainless steels", {L"A2 (1.4301)", L"A4 (1.4401)", L"1.4104"}},
    {L"Aluminium alloys", {L"EN AW-5083", L"EN AW-6061", L"EN AW-6082", L"EN AW-7075"}},
    {L"Brass", {L"CuZn37", L"CuZn39Pb3"}},
    {L"Cast iron", {L"EN-GJL-250", L"EN-GJS-400-15"}},
    {L"Plastics", {L"ABS", L"PA6", L"PA66-GF30", L"PC", L"PEEK", L"POM"}},
};

struct Hardware {
    const wchar_t* standard;
    const wchar_t* kind;
    const wchar_t* size;
    double length;  // 0: nut
    const wchar_t* material;
    const wchar_t* suffix;  // tells apart the same size in another material
};

const Hardware kHardware[] = {
    {L"ISO 4017", L"Hexagon head screw", L"M6", 20, L"C45", L""},
    {L"ISO 4017", L"Hexagon head screw", L"M6", 40, L"C45", L""},
    {L"ISO 4017", L"Hexagon head screw", L"M8", 20, L"C45", L""},
    {L"ISO 4017", L"Hexagon head screw", L"M8", 40, L"C45", L""},
    {L"ISO 4017", L"Hexagon head screw", L"M10", 30, L"C45", L""},
    {L"ISO 4017", L"Hexagon head screw", L"M10", 50, L"C45", L""},
    {L"ISO 4017", L"Hexagon head screw", L"M12", 40, L"42CrMo4", L""},
    {L"ISO 4017", L"Hexagon head screw", L"M16", 50, L"42CrMo4", L""},
    {L"ISO 4017", L"Hexagon head screw", L"M8", 30, L"A2 (1.4301)", L" A2"},
    {L"ISO 4762", L"Hexagon socket head cap screw", L"M3", 10, L"42CrMo4", L""},
    {L"ISO 4762", L"Hexagon socket head cap screw", L"M4", 12, L"42CrMo4", L""},
    {L"ISO 4762", L"Hexagon socket head cap screw", L"M5", 16, L"42CrMo4", L""},
    {L"ISO 4762", L"Hexagon socket head cap screw", L"M6", 20, L"42CrMo4", L""},
    {L"ISO 4762", L"Hexagon socket head cap screw", L"M8", 25, L"42CrMo4", L""},
    {L"ISO 4762", L"Hexagon socket head cap screw", L"M10", 30, L"42CrMo4", L""},
    {L"ISO 4762", L"Hexagon socket head cap screw", L"M12", 35, L"42CrMo4", L""},
    {L"ISO 4032", L"Hexagon nut", L"M6", 0, L"C45", L""},
    {L"ISO 4032", L"Hexagon nut", L"M8", 0, L"C45", L""},
    {L"ISO 4032", L"Hexagon nut", L"M10", 0, L"C45", L""},
    {L"ISO 4032", L"Hexagon nut", L"M12", 0, L"C45", L""},
    {L"ISO 4032", L"Hexagon nut", L"M16", 0, L"C45", L""},
    {L"ISO 4032", L"Hexagon nut", L"M20", 0, L"C45", L""},
    {L"ISO 4032", L"Hexagon nut", L"M24", 0, L"C45", L""},
    {L"ISO 4032", L"Hexagon nut", L"M8", 0, L"A2 (1.4301)", L" A2"},
    {L"ISO 4032", L"Hexagon nut", L"M6", 0, L"CuZn39Pb3", L" brass"},
};

const wchar_t* ThreadText(std::wstring_view size) {
    for (const ThreadSize& t : kThreads)
        if (size == t.size) return t.text;
    return L"";
}

std::wstring LengthText(double length) {
    const long whole = static_cast<long>(length);
    return std::to_wstring(whole);
}

void InsertStarterCatalogue(sqlite3* db) {
    Statement meta(db, "INSERT INTO meta(key, value) VALUES('name', ?1)");
    meta.Bind(1, std::wstring(L"Vantor Database")).Run();

    Statement thread(db, "INSERT INTO thread_size(size, diameter, pitch, text) VALUES(?1,?2,?3,?4)");
    Statement name(db, "INSERT INTO fastener_name(name, name_key, alternate) VALUES(?1,?2,?3)");
    Statement attribute(db,
        "INSERT INTO attribute(set_name, designation, designation_key, value) VALUES(?1,?2,?3,?4)");
    for (const ThreadSize& t : kThreads) {
        thread.Reset();
        thread.Bind(1, std::wstring(t.size)).Bind(2, t.diameter).Bind(3, t.pitch)
            .Bind(4, std::wstring(t.text)).Run();
        for (const FastenerSeries& s : kSeries) {
            const std::wstring designation = std::wstring(s.standard) + L" " + t.size;
            name.Reset();
            name.Bind(1, designation).Bind(2, ZebFoldCase(designation))
                .Bind(3, std::wstring(s.alternate) + L" " + t.size).Run();
            attribute.Reset();
            attribute.Bind(1, std::wstring(kFastenerThreadAttributeSet)).Bind(2, designation)
                .Bind(3, ZebFoldCase(designation)).Bind(4, std::wstring(t.text)).Run();
        }
    }

    Statement group(db, "INSERT INTO material_group(name, name_key) VALUES(?1, ?2)");
    Statement material(db, "INSERT INTO material(group_id, name, name_key) VALUES(?1, ?2, ?3)");
    for (const MaterialGroup& g : kMaterials) {
        group.Reset();
        group.Bind(1, std::wstring(g.group)).Bind(2, ZebFoldCase(g.group)).Run();
        const int64_t groupId = sqlite3_last_insert_rowid(db);
        for (const wchar_t* m : g.materials) {
            material.Reset();
            material.Bind(1, groupId).Bind(2, std::wstring(m)).Bind(3, ZebFoldCase(m)).Run();
        }
    }

    Statement hardware(db,
        "INSERT INTO hardware(designation, designation_key, kind, standard, thread, length,"
        " material, material_key) VALUES(?1,?2,?3,?4,?5,?6,?7,?8)");
    for (const Hardware& h : kHardware) {
        std::wstring designation = std::wstring(h.standard) + L" " + h.size;
        if (h.length > 0) designation += L"x" + LengthText(h.length);
        designation += h.suffix;
        hardware.Reset();
        hardware.Bind(1, designation).Bind(2, ZebFoldCase(designation)).Bind(3, std::wstring(h.kind))
            .Bind(4, std::wstring(h.standard)).Bind(5, std::wstring(ThreadText(h.size)))
            .Bind(6, h.length).Bind(7, std::wstring(h.material)).Bind(8, ZebFoldCase(h.material))
            .Run();
    }
}

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
        Execute(db, kSchemaV1);
        InsertStarterCatalogue(db);
    }
    Execute(db, ("PRAGMA user_version = " + std::to_string(kSchemaVersion)).c_str());
}

}  // namespace zeb_db

#include "starter_catalogue.h"

#include <algorithm>
#include <initializer_list>

#include "framework/case_fold.h"

namespace zeb_db {
namespace {

struct ThreadSize {
    const wchar_t* size;
    double diameter;
    double pitch;
    const wchar_t* text;
};

// Metric coarse threads, ISO 261.
constexpr ThreadSize kThreads[] = {
    {L"M3", 3, 0.5, L"M3x0.5"},      {L"M4", 4, 0.7, L"M4x0.7"},   {L"M5", 5, 0.8, L"M5x0.8"},
    {L"M6", 6, 1.0, L"M6x1"},        {L"M8", 8, 1.25, L"M8x1.25"}, {L"M10", 10, 1.5, L"M10x1.5"},
    {L"M12", 12, 1.75, L"M12x1.75"}, {L"M16", 16, 2.0, L"M16x2"},  {L"M20", 20, 2.5, L"M20x2.5"},
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

}  // namespace

CatalogueData StarterCatalogue() {
    CatalogueData data;
    data.name = L"Vantor Database";
    for (const ThreadSize& t : kThreads) {
        data.threads.push_back({t.size, t.diameter, t.pitch, t.text});
        for (const FastenerSeries& s : kSeries) {
            const std::wstring designation = std::wstring(s.standard) + L" " + t.size;
            data.fasteners.push_back({designation, std::wstring(s.alternate) + L" " + t.size});
            data.attributes.push_back({kFastenerThreadAttributeSet, designation, t.text});
        }
    }
    // Attributes read back by set and designation key.
    std::sort(data.attributes.begin(), data.attributes.end(),
              [](const CatalogueData::Attribute& a, const CatalogueData::Attribute& b) {
                  return std::pair(a.set, ZebFoldCase(a.designation)) <
                         std::pair(b.set, ZebFoldCase(b.designation));
              });
    for (const MaterialGroup& g : kMaterials)
        data.groups.push_back(
            {g.group, std::vector<std::wstring>(g.materials.begin(), g.materials.end())});
    for (const Hardware& h : kHardware) {
        std::wstring designation = std::wstring(h.standard) + L" " + h.size;
        if (h.length > 0) designation += L"x" + std::to_wstring(static_cast<long>(h.length));
        designation += h.suffix;
        data.hardware.push_back(
            {0, designation, h.kind, h.standard, ThreadText(h.size), h.length, h.material});
    }
    return data;
}

bool IsStarterCatalogue(CatalogueData data) {
    for (ZebHardwareRecord& record : data.hardware) record.id = 0;
    return data == StarterCatalogue();
}

}  // namespace zeb_db

// vantor-rules units: the unit codes with their texts and sizes.
#include <charconv>
#include <cstdio>

#include "app/assembly_rules_app.h"
#include "framework/text_convert.h"
#include "framework/unit_convertor.h"
#include "host/host_command.h"
#include "util/texts.h"

namespace {
std::string Metres(double nanometres) {
    char buffer[64];
    const auto result = std::to_chars(buffer, buffer + sizeof buffer, nanometres / 1e9);
    return std::string(buffer, result.ptr);
}

// The unit texts come from the same resource libraries the module uses, through its texts
// helpers.
int RunUnits(const std::vector<std::string>& words) {
    if (!words.empty()) {
        std::fprintf(stderr, "vantor-rules: units takes no arguments\n");
        return 2;
    }
    StartAssemblyRulesApp();
    for (int i = 0; const ZebLengthUnit* unit = CZEBUnitConvertor::UnitAt(i); ++i)
        std::printf("%ld\t%s\t%s\n", unit->code,
                    ToUtf8(GetUnitText(static_cast<int>(unit->code))).c_str(),
                    Metres(unit->nanometres).c_str());
    StopAssemblyRulesApp();
    return 0;
}
}  // namespace

VANTOR_HOST_COMMAND(units, "units", "",
                    "Every unit code, one line each: code, unit text in the user's language and\n"
                    "the size of one unit in metres, separated by tabs.",
                    &RunUnits);

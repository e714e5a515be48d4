// Settings documents through the module's entry points, read and written as `vantor-rules resave`
// and `convert` do. Whatever a document holds, the module's output is a settings document that
// reads again. The first pass may drop what the module cannot take (a parameter without an
// operator) and the second put that parameter's default in its place; from then on a pass
// changes nothing.
#include <cstdio>
#include <cstdlib>
#include <optional>
#include <string>

#include "framework/unit_convertor.h"
#include "framework/zeb_xml.h"
#include "fuzz/fuzz_support.h"
#include "host/module_loader.h"
#include "host/settings_file.h"

namespace {
const ModuleLoader* g_module = nullptr;

// The module's output for `input`, or nothing when it refused to write (a rule it does not know
// would need converting).
std::optional<std::string> Rewrite(ZebXMLDocument& input, std::optional<int> unit) {
    ZebXMLDocument output;
    if (!RewriteRules(*g_module, input, unit, output)) return std::nullopt;
    return output.GetXML();
}
}  // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***) {
    static ModuleLoader loader;
    std::string error;
    if (!loader.Load(ModuleLoader::ModuleFolder(""), error)) {
        std::fprintf(stderr, "settings_resave_fuzz: %s\n", error.c_str());
        std::exit(1);
    }
    g_module = &loader;
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    ZebXMLDocument input;
    std::wstring error;
    if (!input.LoadXML(std::string(Bytes(data, size)), error)) return 0;

    const std::optional<std::string> first = Rewrite(input, std::nullopt);
    if (!first) return 0;
    ZebXMLDocument firstRead;
    FUZZ_CHECK(firstRead.LoadXML(*first, error));
    const std::optional<std::string> saved = Rewrite(firstRead, std::nullopt);
    FUZZ_CHECK(saved.has_value());
    ZebXMLDocument again;
    FUZZ_CHECK(again.LoadXML(*saved, error));
    const std::optional<std::string> savedAgain = Rewrite(again, std::nullopt);
    FUZZ_CHECK(savedAgain && *savedAgain == *saved);

    // Every rule converted to another unit, as a change of the document's unit does; the size
    // of the input picks the unit so that each gets its turn.
    int units = 0;
    while (CZEBUnitConvertor::UnitAt(units)) ++units;
    const int unit =
        static_cast<int>(CZEBUnitConvertor::UnitAt(static_cast<int>(size % units))->code);
    ZebXMLDocument converted;
    FUZZ_CHECK(converted.LoadXML(*saved, error));
    if (const std::optional<std::string> convertedText = Rewrite(converted, unit)) {
        ZebXMLDocument reread;
        FUZZ_CHECK(reread.LoadXML(*convertedText, error));
    }
    return 0;
}

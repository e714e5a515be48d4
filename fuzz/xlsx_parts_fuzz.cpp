// The parts of an ".xlsx" package, zipped again for every input so that mutations reach the XML
// the reader parses instead of failing the archive's checksums. An input is the parts' texts in
// kPartNames order, separated by kPartSeparator; missing parts are left out of the package.
#include <zip.h>

#include <array>
#include <string>
#include <string_view>
#include <vector>

#include "fuzz/fuzz_support.h"
#include "fuzz/workbook_check.h"

namespace {
constexpr std::string_view kPartSeparator = "\n--part--\n";
constexpr std::array<const char*, 6> kPartNames = {
    "_rels/.rels",
    "xl/workbook.xml",
    "xl/_rels/workbook.xml.rels",
    "xl/worksheets/sheet1.xml",
    "xl/sharedStrings.xml",
    "xl/styles.xml",
};

std::vector<std::string_view> SplitParts(std::string_view input) {
    std::vector<std::string_view> parts;
    while (parts.size() + 1 < kPartNames.size()) {
        const size_t at = input.find(kPartSeparator);
        if (at == std::string_view::npos) break;
        parts.push_back(input.substr(0, at));
        input.remove_prefix(at + kPartSeparator.size());
    }
    parts.push_back(input);
    return parts;
}

void WritePackage(const std::string& path, const std::vector<std::string_view>& parts) {
    int error = 0;
    zip_t* zip = zip_open(path.c_str(), ZIP_CREATE | ZIP_TRUNCATE, &error);
    FUZZ_CHECK(zip != nullptr);
    for (size_t i = 0; i < parts.size(); ++i) {
        zip_source_t* source = zip_source_buffer(zip, parts[i].data(), parts[i].size(), 0);
        FUZZ_CHECK(source != nullptr);
        const zip_int64_t index = zip_file_add(zip, kPartNames[i], source, ZIP_FL_OVERWRITE);
        FUZZ_CHECK(index >= 0);
        // Stored, not deflated: the archive is only the carrier here.
        zip_set_file_compression(zip, static_cast<zip_uint64_t>(index), ZIP_CM_STORE, 0);
    }
    FUZZ_CHECK(zip_close(zip) == 0);
}
}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    static const ScratchFile file("workbook.xlsx");
    WritePackage(file.Path(), SplitParts(Bytes(data, size)));
    ReadAndCheckWorkbook(file.Path(), true);
    return 0;
}

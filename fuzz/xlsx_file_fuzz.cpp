// Whole ".xlsx" files through the import's Open XML reader. Most mutations break the ZIP
// structure or a checksum, so this target mostly exercises the archive handling; xlsx_parts_fuzz
// reaches the parts' XML.
#include "fuzz/fuzz_support.h"
#include "fuzz/workbook_check.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    static const ScratchFile file("workbook.xlsx");
    file.Write(Bytes(data, size));
    ReadAndCheckWorkbook(file.Path(), true);
    return 0;
}

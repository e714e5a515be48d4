// ".xls" files through the import, which hands them to the reader program. Whatever the program
// does with a file, crashing inside libfreexl included, the import gets a table or an error
// text and this process goes on.
#include "fuzz/fuzz_support.h"
#include "fuzz/workbook_check.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    static const ScratchFile file("workbook.xls");
    file.Write(Bytes(data, size));
    ReadAndCheckWorkbook(file.Path(), false);
    return 0;
}

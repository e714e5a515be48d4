// STEP files through the engine's assembly reader: whatever the bytes, a read either fails with a
// message or gives solids with distinct paths.
#include <set>

#include "engine/assembly.h"
#include "fuzz/fuzz_support.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    static const ScratchFile file("assembly.stp");
    file.Write(Bytes(data, size));
    Assembly assembly;
    std::string error;
    if (!ReadStepAssembly(file.Path(), assembly, error)) {
        FUZZ_CHECK(!error.empty());
        return 0;
    }
    FUZZ_CHECK(!assembly.parts.empty());
    std::set<std::wstring> paths;
    for (const AssemblyPart& part : assembly.parts) {
        FUZZ_CHECK(!part.path.empty() && !part.shape.IsNull());
        FUZZ_CHECK(paths.insert(part.path).second);
    }
    return 0;
}

#pragma once

#include <string>

// A real assembly that nobody here wrote: the "AS1" test assembly of the public STEP library
// (AP214, 18 solids; see tests/data/engine/README.md).
inline std::string SharedAssembly() {
    return VANTOR_SOURCE_DIR "/tests/data/engine/as1-oc-214.stp";
}

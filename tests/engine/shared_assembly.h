#pragma once

#include <filesystem>
#include <string>

// The real assembly shared beside the repository (../shared/assemblies of the main clone, found
// from any worktree by looking upwards); empty when there is none.
inline std::string SharedAssembly() {
    for (std::filesystem::path dir = VANTOR_SOURCE_DIR; dir.has_relative_path();
         dir = dir.parent_path()) {
        const std::filesystem::path candidate = dir / "shared" / "assemblies" / "as1-oc-214.stp";
        if (std::filesystem::exists(candidate)) return candidate.string();
    }
    return {};
}

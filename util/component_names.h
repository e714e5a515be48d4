#pragma once

#include <string>

// Cuts `name` just behind its first ".prt" (else ".asm"), in any letter case, and gives that
// extension in lower case; a name with neither stays whole with an empty extension.
void SplitComponentName(std::wstring& name, std::wstring& extension);
// False when both names stand for the same component; letter case does not count.
bool ComponentNamesDiffer(const std::wstring& first, const std::wstring& second);

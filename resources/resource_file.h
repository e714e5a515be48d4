#pragma once

// File name of the module's resource library, one in each language folder of the resource root.
inline constexpr const wchar_t* kZebResourceFileName = L"ZEBAssemblyRulesResu.so";

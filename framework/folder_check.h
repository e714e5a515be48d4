#pragma once

#include <string>

#include "framework/vantor_export.h"

// Creates `path` with every missing parent folder. Returns 0 when the last folder was created,
// EEXIST when it was there already, EACCES when access was denied on the way (EACCES, EPERM,
// EROFS), or the failing errno.
VANTOR_FW_API int ZebCreateFolderWithParents(const std::wstring& path);

// True when the folder exists or could be created and a probe folder can be made inside it.
// A folder created here stays; a probe "Temp" that was there before stays too.
VANTOR_FW_API bool ZebIsFolderUsable(const std::wstring& path);

#pragma once

#include <sys/types.h>

#include <string>

#include "framework/vantor_export.h"

// A file is replaced by writing a new one beside it and renaming that over it, so that a failed
// write leaves the old file as it was.

// Creates and opens for writing a new hidden file ".vantor-XXXXXX" in the folder of `target`
// (created exclusively, so no other file is ever written over; the short name leaves room beside
// a target name close to the longest a folder allows). Returns the descriptor with its path in
// `temp`, or -1 with errno set.
VANTOR_FW_API int ZebOpenFileBeside(const std::string& target, mode_t mode, std::string& temp);

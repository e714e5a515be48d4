#pragma once

#include <string>
#include <vector>

#include "host/module_loader.h"

// The differences between two settings documents as the module reads them, one line each: the
// unit, rules added and removed, and per rule its severity and status and per parameter its
// operator, status, result criteria, values and table rows (rows matched by their first cell).
// NEW is brought into OLD's unit as convert does; values count as equal when either document
// converted into the other's unit is written with the other's values, so a document and its
// converted copy are equal. Values are shown in OLD's unit. A change of unit is one line, shown
// only with other differences. Lines follow OLD's order; rules only NEW has come last.
// False, with `error` set, when either file cannot be read or is not well-formed.
bool DiffSettings(const ModuleLoader& loader, const std::string& oldPath,
                  const std::string& newPath, std::vector<std::string>& lines, std::string& error);

#pragma once

#include <QString>

// The editor's name of a length unit code, in the user's language: "Millimetres (mm)"; the code
// itself for a code no unit has.
QString UnitText(long code);

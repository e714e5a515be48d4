#pragma once

#include <string>

#include "framework/vantor_export.h"

// One length unit code of the framework.
struct ZebLengthUnit {
    long code;
    const char* name;      // English name, for listings
    double nanometres;     // size of one unit; every entry is a whole number of nanometres
};

// Length and volume conversion between the framework's unit codes.
class VANTOR_FW_API CZEBUnitConvertor {
public:
    // Kind 1 is a length. Unknown kinds or unit codes, and equal units, return `value` as it is.
    static double ConversionFromOneUnitToAnother(double value, long kind, long from, long to);
    // The same for a volume: the length factor cubed.
    static double ConversionFromOneUnitToAnotherForVolume(double value, long kind, long from, long to);

    // The table of unit codes, in code order; null past the end.
    static const ZebLengthUnit* UnitAt(int index);
    static const ZebLengthUnit* FindUnit(long code);
};

#pragma once

#include <string>

#include "framework/vantor_export.h"

// One length unit code of the framework.
struct ZebLengthUnit {
    long code;
    const char* name;    // English name, for listings
    const char* symbol;  // UTF-8, the same in every language
    double nanometres;   // size of one unit; every entry is a whole number of nanometres
};

// value * (from / to)^power for one pair of unit codes, with the ratio worked out once: the
// conversion of every cell of a large table. Unknown or equal codes leave values as they are.
class VANTOR_FW_API ZebUnitScale {
public:
    ZebUnitScale(long from, long to, int power);
    double Apply(double value) const { return m_identity ? value : value * m_p / m_q; }

private:
    bool m_identity = true;
    double m_p = 1.0, m_q = 1.0;
};

// Length and volume conversion between the framework's unit codes.
class VANTOR_FW_API CZEBUnitConvertor {
public:
    // Kind 1 is a length. Unknown kinds or unit codes, and equal units, return `value` as it is.
    static double ConversionFromOneUnitToAnother(double value, long kind, long from, long to);
    // The same for a volume: the length factor cubed.
    static double ConversionFromOneUnitToAnotherForVolume(double value, long kind, long from,
                                                          long to);

    // The table of unit codes, in code order; null past the end.
    static const ZebLengthUnit* UnitAt(int index);
    static const ZebLengthUnit* FindUnit(long code);
};

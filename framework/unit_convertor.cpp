#include "framework/unit_convertor.h"

#include <numeric>

namespace {
// Sizes in nanometres are whole numbers, so every ratio between two units is an exact fraction
// and 1 in = 25.4 mm holds exactly.
const ZebLengthUnit kUnits[] = {
    {0, "millimetre", "mm", 1e6},
    {1, "centimetre", "cm", 1e7},
    {2, "metre", "m", 1e9},
    {3, "inch", "in", 25400000.0},
    {4, "foot", "ft", 304800000.0},
    {5, "nanometre", "nm", 1.0},
    {6, "micrometre", "\u00b5m", 1e3},
    {7, "decimetre", "dm", 1e8},
    {8, "yard", "yd", 914400000.0},
    {9, "thousandth of an inch", "mil", 25400.0},
    {10, "kilometre", "km", 1e12},
};

constexpr long kLength = 1;
}  // namespace

// The ratio is reduced to lowest terms: one exact product of whole numbers each way, then a
// multiplication and a division, so that decimal inputs such as 25.4 mm come out as the exact 1 in.
ZebUnitScale::ZebUnitScale(long from, long to, int power) {
    const ZebLengthUnit* a = CZEBUnitConvertor::FindUnit(from);
    const ZebLengthUnit* b = CZEBUnitConvertor::FindUnit(to);
    if (!a || !b || from == to) return;
    const long long na = static_cast<long long>(a->nanometres);
    const long long nb = static_cast<long long>(b->nanometres);
    const long long g = std::gcd(na, nb);
    for (int i = 0; i < power; ++i) {
        m_p *= static_cast<double>(na / g);
        m_q *= static_cast<double>(nb / g);
    }
    m_identity = false;
}

double CZEBUnitConvertor::ConversionFromOneUnitToAnother(double value, long kind, long from,
                                                         long to) {
    if (kind != kLength) return value;
    return ZebUnitScale(from, to, 1).Apply(value);
}

double CZEBUnitConvertor::ConversionFromOneUnitToAnotherForVolume(double value, long kind,
                                                                  long from, long to) {
    if (kind != kLength) return value;
    return ZebUnitScale(from, to, 3).Apply(value);
}

const ZebLengthUnit* CZEBUnitConvertor::UnitAt(int index) {
    constexpr int count = sizeof kUnits / sizeof kUnits[0];
    return index >= 0 && index < count ? &kUnits[index] : nullptr;
}

const ZebLengthUnit* CZEBUnitConvertor::FindUnit(long code) {
    for (const ZebLengthUnit& u : kUnits)
        if (u.code == code) return &u;
    return nullptr;
}

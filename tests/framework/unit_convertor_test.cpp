#include "framework/unit_convertor.h"

#include <gtest/gtest.h>

#include <cmath>

namespace {
constexpr long kLength = 1;
double Convert(double v, long from, long to) {
    return CZEBUnitConvertor::ConversionFromOneUnitToAnother(v, kLength, from, to);
}
double ConvertVolume(double v, long from, long to) {
    return CZEBUnitConvertor::ConversionFromOneUnitToAnotherForVolume(v, kLength, from, to);
}
}  // namespace

TEST(UnitConvertor, KnownFactorsAreExact) {
    EXPECT_EQ(Convert(1.0, 3, 0), 25.4);
    EXPECT_EQ(Convert(25.4, 0, 3), 1.0);
    EXPECT_EQ(Convert(1.0, 4, 3), 12.0);
    EXPECT_EQ(Convert(1.0, 8, 4), 3.0);
    EXPECT_EQ(Convert(1000.0, 9, 3), 1.0);
    EXPECT_EQ(Convert(1.0, 2, 0), 1000.0);
    EXPECT_EQ(Convert(1.0, 10, 2), 1000.0);
    EXPECT_EQ(Convert(1.0, 0, 6), 1000.0);
    EXPECT_EQ(Convert(1.0, 7, 1), 10.0);
    EXPECT_EQ(Convert(1.0, 6, 5), 1000.0);
    EXPECT_EQ(ConvertVolume(1.0, 3, 0), 16387.064);
    EXPECT_EQ(ConvertVolume(1.0, 1, 0), 1000.0);
    EXPECT_EQ(ConvertVolume(1e9, 0, 2), 1.0);
}

TEST(UnitConvertor, EveryPairConvertsThereAndBack) {
    for (int i = 0; CZEBUnitConvertor::UnitAt(i); ++i) {
        for (int j = 0; CZEBUnitConvertor::UnitAt(j); ++j) {
            const long a = CZEBUnitConvertor::UnitAt(i)->code;
            const long b = CZEBUnitConvertor::UnitAt(j)->code;
            for (double v : {0.1, 1.0, 12.7, 123456.789}) {
                const double there = Convert(v, a, b);
                const double ratio = CZEBUnitConvertor::UnitAt(i)->nanometres /
                                     CZEBUnitConvertor::UnitAt(j)->nanometres;
                EXPECT_NEAR(there, v * ratio, std::abs(v * ratio) * 1e-15) << a << "->" << b;
                EXPECT_NEAR(Convert(there, b, a), v, v * 1e-15) << a << "<->" << b;
                const double vol = ConvertVolume(v, a, b);
                EXPECT_NEAR(vol, v * ratio * ratio * ratio,
                            std::abs(v * ratio * ratio * ratio) * 1e-14);
                EXPECT_NEAR(ConvertVolume(vol, b, a), v, v * 1e-14);
            }
        }
    }
}

TEST(UnitConvertor, SameUnitUnknownUnitAndOtherKindsLeaveTheValue) {
    const double odd = 0.1 + 0.2;
    for (long code = 0; code <= 10; ++code) {
        EXPECT_EQ(Convert(odd, code, code), odd);
        EXPECT_EQ(ConvertVolume(odd, code, code), odd);
    }
    EXPECT_EQ(Convert(5.0, 0, 42), 5.0);
    EXPECT_EQ(Convert(5.0, -1, 3), 5.0);
    EXPECT_EQ(CZEBUnitConvertor::ConversionFromOneUnitToAnother(5.0, 2, 3, 0), 5.0);
    EXPECT_EQ(CZEBUnitConvertor::FindUnit(11), nullptr);
}

#include "platform/Numeros.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace {

TEST(Numeros, ReadsRealsWithAPointInAnyLocale) {
    EXPECT_EQ(LeeReal(" \t-12.5e1 m"), -125.0);
    EXPECT_EQ(LeeReal(L"+0.125"), 0.125);
    EXPECT_EQ(LeeReal("12,5"), 12.0);
    EXPECT_EQ(LeeReal(".5"), 0.5);
    EXPECT_EQ(LeeReal("5."), 5.0);
    EXPECT_EQ(LeeReal("1e"), 1.0);
    EXPECT_EQ(LeeReal(""), 0.0);
    EXPECT_EQ(LeeReal("x1"), 0.0);
    EXPECT_EQ(LeeReal("+-1"), 0.0);
    EXPECT_EQ(LeeReal(L"ñ"), 0.0);
    EXPECT_EQ(LeeReal(L"3ñ"), 3.0);
}

TEST(Numeros, TakesRealsOutOfRangeToTheNearest) {
    EXPECT_EQ(LeeReal("1e999"), std::numeric_limits<double>::infinity());
    EXPECT_EQ(LeeReal("-1e999"), -std::numeric_limits<double>::infinity());
    EXPECT_EQ(LeeReal("1e-999"), 0.0);
}

TEST(Numeros, ReadsIntegersAndStopsAtTheirLimits) {
    EXPECT_EQ(LeeEntero("  -42abc"), -42);
    EXPECT_EQ(LeeEntero(L"+7"), 7);
    EXPECT_EQ(LeeEntero("3.9"), 3);
    EXPECT_EQ(LeeEntero("0x10"), 0);
    EXPECT_EQ(LeeEntero(""), 0);
    EXPECT_EQ(LeeEntero("-"), 0);
    EXPECT_EQ(LeeEntero("99999999999"), std::numeric_limits<int>::max());
    EXPECT_EQ(LeeEntero("-99999999999"), std::numeric_limits<int>::min());
    EXPECT_EQ(LeeEntero64("99999999999"), 99999999999);
    EXPECT_EQ(LeeEntero64(L"-99999999999999999999"), std::numeric_limits<std::int64_t>::min());
}

TEST(Numeros, WritesRealsWithAPointInAnyLocale) {
    EXPECT_EQ(TextoReal(1234567.5), "1234567.500000");
    EXPECT_EQ(TextoReal(-0.005, 2), "-0.01");
    EXPECT_EQ(TextoReal(2.5, -1), "2");
    EXPECT_EQ(TextoReal(std::numeric_limits<double>::max(), 0).size(), 309u);
    EXPECT_EQ(TextoGeneral(0.1, 17), "0.10000000000000001");
    EXPECT_EQ(TextoGeneral(1e20), "1e+20");
}

TEST(Numeros, TheShortestTextGivesTheSameNumberBack) {
    EXPECT_EQ(TextoExacto(0.1), "0.1");
    EXPECT_EQ(TextoExacto(-1e300), "-1e+300");
    const double tercio = 1.0 / 3.0, minimo = std::numeric_limits<double>::denorm_min();
    EXPECT_EQ(LeeReal(TextoExacto(tercio)), tercio);
    EXPECT_EQ(LeeReal(TextoExacto(-minimo)), -minimo);
}

}  // namespace

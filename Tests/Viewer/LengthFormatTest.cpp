// SPDX-License-Identifier: MIT
#include "Viewer/Model/LengthFormat.h"

#include <gtest/gtest.h>

#include <limits>

namespace quon::testing {

namespace {

using viewer::LengthFormat;
using viewer::LengthUnit;

const QLocale British(QLocale::English, QLocale::UnitedKingdom);
const QLocale German(QLocale::German, QLocale::Germany);

TEST(LengthFormatTest, MetresAreWrittenInTheUnitOfTheUser)
{
    EXPECT_EQ(LengthFormat(LengthUnit::Metre, true, British).format(0.254), QStringLiteral("0.2540 m"));
    EXPECT_EQ(LengthFormat(LengthUnit::Millimetre, true, British).format(0.254), QStringLiteral("254.0 mm"));
    EXPECT_EQ(LengthFormat(LengthUnit::Inch, true, British).format(0.254), QStringLiteral("10.00 in"));
}

TEST(LengthFormatTest, LengthsOfAnUnknownUnitKeepTheirNumbersWhateverTheUserPrefers)
{
    EXPECT_EQ(LengthFormat(LengthUnit::Millimetre, false, British).format(12.5), QStringLiteral("12.50 units"));
}

TEST(LengthFormatTest, FourDigitsCount)
{
    const LengthFormat format(LengthUnit::Metre, true, British);

    EXPECT_EQ(format.format(0), QStringLiteral("0 m"));
    EXPECT_EQ(format.format(1), QStringLiteral("1.000 m"));
    EXPECT_EQ(format.format(-12.3456), QStringLiteral("-12.35 m"));
    EXPECT_EQ(format.format(0.00123456), QStringLiteral("0.001235 m"));
    EXPECT_EQ(format.format(0.99999), QStringLiteral("1.000 m"));
    EXPECT_EQ(format.format(9.9999), QStringLiteral("10.00 m"));
    EXPECT_EQ(format.format(9999.9), QStringLiteral("10,000 m"));
    EXPECT_EQ(format.format(123456), QStringLiteral("123,456 m"));
}

TEST(LengthFormatTest, VeryLargeAndVerySmallLengthsHaveExponents)
{
    const LengthFormat format(LengthUnit::Metre, true, British);

    EXPECT_EQ(format.format(1.5e-9), QStringLiteral("1.5e-09 m"));
    EXPECT_EQ(format.format(2.5e12), QStringLiteral("2.5e+12 m"));
}

TEST(LengthFormatTest, WhatIsNoNumberIsADash)
{
    EXPECT_EQ(LengthFormat().format(std::numeric_limits<double>::quiet_NaN()), QStringLiteral("–"));
    EXPECT_EQ(LengthFormat().format(std::numeric_limits<double>::infinity()), QStringLiteral("–"));
}

TEST(LengthFormatTest, SeparatorsAreThoseOfTheLocale)
{
    EXPECT_EQ(LengthFormat(LengthUnit::Millimetre, true, German).format(1.2344), QStringLiteral("1.234 mm"));
    EXPECT_EQ(LengthFormat(LengthUnit::Metre, true, German).format(1.5), QStringLiteral("1,500 m"));
}

TEST(LengthFormatTest, ABoxHasItsUnitOnce)
{
    EXPECT_EQ(LengthFormat(LengthUnit::Millimetre, true, British).formatSize(osg::Vec3f(0.5F, 1.25F, 0.03125F)),
              QStringLiteral("500.0 × 1,250 × 31.25 mm"));
}

} // namespace

} // namespace quon::testing

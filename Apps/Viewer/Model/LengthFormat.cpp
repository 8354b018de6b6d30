// SPDX-License-Identifier: MIT
#include "Viewer/Model/LengthFormat.h"

#include <algorithm>
#include <cmath>

namespace quon::viewer {

namespace {

constexpr int Digits = 4;

// Outside of these, digits before or behind the point only fill up space.
constexpr double Smallest = 1e-4;
constexpr double Largest = 1e7;

// The power of ten of the first digit that is written: that of 1 for 0.99999, which is written 1.000.
int exponentOf(const double size)
{
    const int exponent = static_cast<int>(std::floor(std::log10(size)));
    const double rounded = std::round(size * std::pow(10.0, Digits - 1 - exponent));
    return rounded < std::pow(10.0, Digits) ? exponent : exponent + 1;
}

} // namespace

double getMetres(const LengthUnit unit)
{
    switch (unit) {
    case LengthUnit::Millimetre:
        return 0.001;
    case LengthUnit::Inch:
        return 0.0254;
    default:
        return 1;
    }
}

LengthFormat::LengthFormat(const LengthUnit unit, const bool isMetric, const QLocale& locale)
    : m_unit(unit)
    , m_isMetric(isMetric)
    , m_locale(locale)
{}

QString LengthFormat::format(const double length) const
{
    return std::isfinite(length) ? withUnit(number(length)) : QStringLiteral("–");
}

QString LengthFormat::formatSize(const osg::Vec3f& size) const
{
    return withUnit(tr("%1 × %2 × %3", "width, height and depth of a box")
                        .arg(number(static_cast<double>(size[0])), number(static_cast<double>(size[1])),
                             number(static_cast<double>(size[2]))));
}

QString LengthFormat::getName(const LengthUnit unit)
{
    switch (unit) {
    case LengthUnit::Millimetre:
        return tr("Millimetres (mm)");
    case LengthUnit::Inch:
        return tr("Inches (in)");
    default:
        return tr("Metres (m)");
    }
}

QString LengthFormat::number(const double length) const
{
    const double value = m_isMetric ? length / getMetres(m_unit) : length;
    const double size = std::abs(value);
    if (size > 0 && (size < Smallest || size >= Largest)) {
        // Qt 6 writes the E of some languages.
        return m_locale.toString(value, 'g', Digits).toLower();
    }
    const int decimals = size > 0 ? std::max(Digits - 1 - exponentOf(size), 0) : 0;
    return m_locale.toString(value, 'f', decimals);
}

QString LengthFormat::withUnit(const QString& text) const
{
    if (!m_isMetric) {
        return tr("%1 units", "a length whose unit is not known").arg(text);
    }
    switch (m_unit) {
    case LengthUnit::Millimetre:
        return tr("%1 mm").arg(text);
    case LengthUnit::Inch:
        return tr("%1 in", "inches").arg(text);
    default:
        return tr("%1 m").arg(text);
    }
}

} // namespace quon::viewer

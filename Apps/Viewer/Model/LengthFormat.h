// SPDX-License-Identifier: MIT
#pragma once

#include <OpenSG/OSGConfig.h>

#include <OpenSG/OSGVector.h>

#include <QCoreApplication>
#include <QLocale>
#include <QString>

namespace quon::viewer {

/** A unit that lengths are shown in. */
enum class LengthUnit { Metre, Millimetre, Inch };

/** Returns how many metres one of it is. */
double getMetres(LengthUnit unit);

/**
 * Writes lengths of the scene for the user, with four significant digits and the separators of a locale.
 *
 * Lengths in metres are written in the unit that the user prefers. Where the unit of the scene is not known, numbers
 * are written as they are, and as what they are: "12.5 units".
 */
class LengthFormat {
    Q_DECLARE_TR_FUNCTIONS(LengthFormat)

public:
    /**
     * @param unit what lengths are shown in
     * @param isMetric whether the scene is measured in metres; otherwise its unit is not known
     */
    explicit LengthFormat(LengthUnit unit = LengthUnit::Metre, bool isMetric = true, const QLocale& locale = QLocale());

    /** Writes one length of the scene with its unit. What is not a number becomes a dash. */
    QString format(double length) const;

    /** Writes the edges of a box, the unit once. */
    QString formatSize(const osg::Vec3f& size) const;

    LengthUnit getUnit() const { return m_unit; }
    bool isMetric() const { return m_isMetric; }

    /** Returns the name of a unit for a menu, for example "Millimetres (mm)". */
    static QString getName(LengthUnit unit);

private:
    QString number(double length) const;
    QString withUnit(const QString& text) const;

    LengthUnit m_unit;
    bool m_isMetric;
    QLocale m_locale;
};

} // namespace quon::viewer

// SPDX-License-Identifier: MIT
#pragma once

#include "Viewer/Session/SelectionDisplay.h"

#include <QColor>
#include <QPixmap>
#include <QPointer>
#include <QSize>
#include <QWidget>

#include <optional>

class QCheckBox;
class QColorDialog;
class QComboBox;
class QDoubleSpinBox;
class QLabel;
class QSlider;
class QToolButton;

namespace quon::viewer {

/** Fields for how a selection is drawn; every change is told at once. */
class SelectionLookEditor : public QWidget {
    Q_OBJECT

public:
    explicit SelectionLookEditor(QWidget* parent = nullptr);

    /** Shows a look without telling about it. */
    void setLook(const SelectionLook& look);
    const SelectionLook& getLook() const { return m_look; }

    /** Sets half the extent of the model in world units: what the size of markers is measured by. */
    void setSceneRadius(double radius);

    /**
     * Ends what the user has not finished, before another look is shown: closes the colour dialog, where what it showed
     * last stays, and drops a size that is half typed.
     */
    void dropUnfinished();

signals:
    /** The user changed the look. */
    void lookEdited(const quon::viewer::SelectionLook& look);

protected:
    void changeEvent(QEvent* event) override;

private:
    void retranslate();
    template <class Change>
    void change(const Change& change);
    void setColour(const QColor& colour);
    void askForColour();
    void updateFields();

    SelectionLook m_look;
    QLabel* m_kindLabel;
    QComboBox* m_kind;
    QLabel* m_colourLabel;
    QToolButton* m_colour;
    QCheckBox* m_overlay;
    QLabel* m_transparencyLabel;
    QSlider* m_transparency;
    QLabel* m_percent;
    QLabel* m_markerLabel;
    QDoubleSpinBox* m_marker;
    double m_usualMarkerSize = 0;
    std::optional<float> m_shownMarkerSize; ///< what the field was given last, whatever is typed there since
    QPointer<QColorDialog> m_dialog;
};

/** Returns the colour as the interface has it. */
QColor toQColor(const osg::Color3f& colour);

/** Returns a rounded square of the colour, of @p size in pixels of the interface. */
QPixmap makeSwatch(const QColor& colour, const QSize& size, double pixelRatio);

} // namespace quon::viewer

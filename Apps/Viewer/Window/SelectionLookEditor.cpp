// SPDX-License-Identifier: MIT
#include "Viewer/Window/SelectionLookEditor.h"

#include <QCheckBox>
#include <QColorDialog>
#include <QComboBox>
#include <QDoubleSpinBox>
#include <QEvent>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QPainter>
#include <QPixmap>
#include <QSignalBlocker>
#include <QSlider>
#include <QToolButton>

#include <algorithm>
#include <cmath>

namespace quon::viewer {

namespace {

using Kind = SelectionLook::Kind;

// Beyond that a selection is as good as not there.
constexpr int LargestPercent = 95;
// With what the library begins: opaque, but still drawn among the transparent.
constexpr float SmallestTransparency = 0.001F;

constexpr QSize SwatchSize(36, 14);

osg::Color3f toColor3f(const QColor& colour)
{
    // Which of the two Qt has depends on its version.
    const auto component = [](const double value) { return static_cast<float>(value); };
    return osg::Color3f(component(colour.redF()), component(colour.greenF()), component(colour.blueF()));
}

} // namespace

QColor toQColor(const osg::Color3f& colour)
{
    const auto component = [](const float value) { return std::clamp(value, 0.0F, 1.0F); };
    return QColor::fromRgbF(component(colour.red()), component(colour.green()), component(colour.blue()));
}

QPixmap makeSwatch(const QColor& colour, const QSize& size, const double pixelRatio)
{
    QPixmap swatch(size * pixelRatio);
    swatch.setDevicePixelRatio(pixelRatio);
    swatch.fill(Qt::transparent);
    QPainter painter(&swatch);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(colour.darker(140));
    painter.setBrush(colour);
    painter.drawRoundedRect(QRectF(QPointF(0.5, 0.5), QSizeF(size) - QSizeF(1, 1)), 2, 2);
    return swatch;
}

SelectionLookEditor::SelectionLookEditor(QWidget* parent)
    : QWidget(parent)
    , m_kindLabel(new QLabel(this))
    , m_kind(new QComboBox(this))
    , m_colourLabel(new QLabel(this))
    , m_colour(new QToolButton(this))
    , m_overlay(new QCheckBox(this))
    , m_transparencyLabel(new QLabel(this))
    , m_transparency(new QSlider(Qt::Horizontal, this))
    , m_percent(new QLabel(this))
    , m_markerLabel(new QLabel(this))
    , m_marker(new QDoubleSpinBox(this))
{
    m_kind->setObjectName(QStringLiteral("kind"));
    m_colour->setObjectName(QStringLiteral("colour"));
    m_overlay->setObjectName(QStringLiteral("overlay"));
    m_transparency->setObjectName(QStringLiteral("transparency"));
    m_marker->setObjectName(QStringLiteral("markerSize"));

    m_kind->addItem(QString(), static_cast<int>(Kind::Boxes));
    m_kind->addItem(QString(), static_cast<int>(Kind::Wireframe));
    m_colour->setIconSize(SwatchSize);
    m_colour->setFocusPolicy(Qt::StrongFocus);
    m_transparency->setRange(0, LargestPercent);
    m_transparency->setPageStep(10);
    m_percent->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    m_percent->setMinimumWidth(fontMetrics().horizontalAdvance(QStringLiteral("100 %")));
    m_marker->setKeyboardTracking(false);
    setSceneRadius(1);

    auto* transparency = new QHBoxLayout;
    transparency->addWidget(m_transparency);
    transparency->addWidget(m_percent);
    auto* form = new QFormLayout(this);
    form->setContentsMargins(0, 0, 0, 0);
    form->setFieldGrowthPolicy(QFormLayout::AllNonFixedFieldsGrow);
    form->addRow(m_kindLabel, m_kind);
    form->addRow(m_colourLabel, m_colour);
    form->addRow(m_transparencyLabel, transparency);
    form->addRow(m_markerLabel, m_marker);
    form->addRow(QString(), m_overlay);
    m_kindLabel->setBuddy(m_kind);
    m_colourLabel->setBuddy(m_colour);
    m_transparencyLabel->setBuddy(m_transparency);
    m_markerLabel->setBuddy(m_marker);

    connect(m_kind, QOverload<int>::of(&QComboBox::activated), this,
            [this] { change([this] { m_look.kind = static_cast<Kind>(m_kind->currentData().toInt()); }); });
    connect(m_overlay, &QCheckBox::toggled, this,
            [this](const bool overlay) { change([&] { m_look.overlay = overlay; }); });
    connect(m_transparency, &QSlider::valueChanged, this, [this](const int percent) {
        change([&] { m_look.transparency = std::max(SmallestTransparency, static_cast<float>(percent) / 100); });
    });
    connect(m_marker, QOverload<double>::of(&QDoubleSpinBox::valueChanged), this,
            [this](const double size) { change([&] { m_look.markerSize = static_cast<float>(size); }); });
    connect(m_colour, &QToolButton::clicked, this, &SelectionLookEditor::askForColour);
    retranslate();
    updateFields();
}

void SelectionLookEditor::setLook(const SelectionLook& look)
{
    m_look = look;
    updateFields();
}

void SelectionLookEditor::setSceneRadius(const double radius)
{
    // Two hundredths are what a marker begins with; a step is about a tenth to a whole of that.
    const double usual = radius > 0 && std::isfinite(radius) ? radius * 0.02 : 0.02;
    if (usual == m_usualMarkerSize) {
        return;
    }
    m_usualMarkerSize = usual;
    m_shownMarkerSize.reset();
    const QSignalBlocker blocker(m_marker);
    const int magnitude = static_cast<int>(std::floor(std::log10(usual)));
    m_marker->setDecimals(std::clamp(2 - magnitude, 0, 12));
    m_marker->setRange(usual / 100, usual * 50);
    m_marker->setSingleStep(std::pow(10.0, magnitude));
    updateFields();
}

void SelectionLookEditor::dropUnfinished()
{
    m_shownMarkerSize.reset();
    updateFields();
    if (m_dialog != nullptr) {
        // Its refusal would give the old colour to whatever is shown by then.
        disconnect(m_dialog, nullptr, this, nullptr);
        m_dialog->close();
    }
}

void SelectionLookEditor::changeEvent(QEvent* event)
{
    QWidget::changeEvent(event);
    if (event->type() == QEvent::LanguageChange) {
        retranslate();
        updateFields();
    }
}

void SelectionLookEditor::retranslate()
{
    m_kindLabel->setText(tr("Drawn as"));
    m_kind->setItemText(0, tr("Boxes"));
    m_kind->setItemText(1, tr("Wireframe"));
    m_colourLabel->setText(tr("Colour"));
    m_colour->setToolTip(tr("Choose the colour"));
    m_colour->setAccessibleName(tr("Colour"));
    m_overlay->setText(tr("Over everything"));
    m_overlay->setToolTip(tr("Draw over nearer parts, too"));
    m_transparencyLabel->setText(tr("Transparency"));
    m_markerLabel->setText(tr("Marker size"));
    m_marker->setToolTip(tr("Half the edge of the cube that marks a group without extent, in the units of the model"));
}

template <class Change>
void SelectionLookEditor::change(const Change& change)
{
    change();
    updateFields();
    emit lookEdited(m_look);
}

void SelectionLookEditor::setColour(const QColor& colour)
{
    change([&] { m_look.colour = toColor3f(colour); });
}

void SelectionLookEditor::askForColour()
{
    dropUnfinished();
    // As it is: the dialog's colours are rounded.
    const osg::Color3f before = m_look.colour;
    m_dialog = new QColorDialog(toQColor(before), this);
    m_dialog->setAttribute(Qt::WA_DeleteOnClose);
    m_dialog->setWindowTitle(tr("Colour"));
    // Shown in the scene while it is chosen.
    connect(m_dialog, &QColorDialog::currentColorChanged, this, &SelectionLookEditor::setColour);
    connect(m_dialog, &QDialog::rejected, this, [this, before] { change([&] { m_look.colour = before; }); });
    m_dialog->open();
}

void SelectionLookEditor::updateFields()
{
    const QSignalBlocker kindBlocker(m_kind);
    const QSignalBlocker overlayBlocker(m_overlay);
    const QSignalBlocker transparencyBlocker(m_transparency);
    const QSignalBlocker markerBlocker(m_marker);
    m_kind->setCurrentIndex(m_kind->findData(static_cast<int>(m_look.kind)));
    m_overlay->setChecked(m_look.overlay);
    m_transparency->setValue(static_cast<int>(std::lround(m_look.transparency * 100)));
    m_percent->setText(tr("%1 %").arg(m_transparency->value()));
    // What somebody is typing stays there until the size is another.
    if (m_shownMarkerSize != m_look.markerSize) {
        m_shownMarkerSize = m_look.markerSize;
        m_marker->setValue(static_cast<double>(m_look.markerSize));
    }
    // A wireframe needs no markers: it has nothing to draw of a group without extent.
    m_marker->setEnabled(m_look.kind == Kind::Boxes);
    m_markerLabel->setEnabled(m_look.kind == Kind::Boxes);
    m_colour->setIcon(makeSwatch(toQColor(m_look.colour), SwatchSize, devicePixelRatioF()));
}

} // namespace quon::viewer

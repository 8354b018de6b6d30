// SPDX-License-Identifier: MIT
#pragma once

#include "Viewer/Drawing/MeasureLine.h"
#include "Viewer/Model/LengthFormat.h"
#include "Viewer/Tools/ViewerTool.h"

#include <InteractionTools/ClickOrDrag.h>

#include <OpenSG/OSGConfig.h>

#include <OpenSG/OSGVector.h>

#include <QCoreApplication>
#include <QString>

#include <functional>
#include <optional>
#include <string>

namespace quon::interaction {
class Picker;
}

namespace quon::viewer {

/**
 * Measures between two points on surfaces: the distance, its share along each axis, and the angle between the normals
 * of the surfaces.
 *
 * A click, with whatever modifiers, sets the first point, the next one the second, and one more begins anew; a press
 * that moved three pixels or more before its release is a drag and sets nothing, and so does a click on empty space.
 * While the pointer hovers, the line to the place below it is shown already. Leaving a step takes back the point that
 * waits for another, or else the finished measurement.
 *
 * A measurement is between places, not between parts: it stays where it is when parts are hidden, and ends with the
 * mode or with the model. Normals point towards the viewer, as far as the picker makes them.
 */
class MeasureTool : public ViewerTool {
    Q_DECLARE_TR_FUNCTIONS(MeasureTool)

public:
    /** @param camera borrowed, must outlive the tool; the line is drawn as this camera sees it */
    explicit MeasureTool(const CameraController& camera);

    /** @param changed called when something else is to be drawn */
    void setChanged(std::function<void()> changed);

    /** Sets how lengths are written, also those that are shown. At first the unit of the scene is not known. */
    void setLengthFormat(const LengthFormat& format);
    const LengthFormat& getLengthFormat() const { return m_format; }

    /** What is drawn over the scene. */
    MeasureLine& getLine() { return m_line; }

    /** Whether both points are set. */
    bool isFinished() const { return m_first && m_second; }

    /** Returns the finished measurement as several lines of text in the user's language, empty when there is none. */
    QString getResult() const;

    /** Forgets all points. */
    void clear();

    bool leaveStep() override;
    void cancel() override;
    void retranslate() override;
    Qt::CursorShape getCursor() const override { return Qt::CrossCursor; }
    void pointerMoved(interaction::ToolInteractionContext* context) override;
    void beginFrame(interaction::ToolInteractionContext* context) override;

    void deactivateTool(interaction::ToolInteractionContext* context) override;
    bool startTool(interaction::ToolInteractionContext* context, const std::string& hint) override;
    bool triggerTool(interaction::ToolInteractionContext* context, const std::string& hint) override;
    bool hoverTool(interaction::ToolInteractionContext* context, const std::string& hint) override;
    bool stopHoverTool(interaction::ToolInteractionContext* context, const std::string& hint) override;

private:
    /** A place on a surface. */
    struct SurfacePoint {
        osg::Pnt3f place;
        osg::Vec3f normal; ///< of any length
    };

    static std::optional<SurfacePoint> pick(interaction::Picker& picker);

    void setPointer(const std::optional<SurfacePoint>& pointer);
    void update();
    QString formatDistance(const SurfacePoint& second) const;
    QString formatStep(osg::UInt32 axis) const;
    QString formatAngle() const;

    std::function<void()> m_changed;
    LengthFormat m_format;
    MeasureLine m_line;
    std::optional<SurfacePoint> m_first;
    std::optional<SurfacePoint> m_second;
    std::optional<SurfacePoint> m_pointer; ///< below the pointer while it hovers
    interaction::ClickOrDrag m_press;
    bool m_hovering = false; ///< the last movement was one without a button
};

} // namespace quon::viewer

// SPDX-License-Identifier: MIT
#pragma once

#include "Viewer/Model/LengthFormat.h"
#include "Viewer/Model/LoadedModel.h"

#include <QObject>
#include <QString>

class QSettings;

namespace quon::viewer {

class ViewerSession;

/**
 * How the model of a session lies in the world, and how its lengths are written.
 *
 * Files that say which axis points up and what their unit is are taken at their word, until the user says otherwise for
 * the model that is shown. For files that do not say, the user's choice is remembered by the extension of their names.
 */
class ModelSettings : public QObject {
    Q_OBJECT

public:
    /** @param session borrowed, must outlive this object */
    explicit ModelSettings(ViewerSession& session, QObject* parent = nullptr);

    /** Takes over what is remembered in @p settings and keeps it there from now on; borrowed. Null keeps it nowhere. */
    void useSettings(QSettings* settings);

    /** Shows a loaded model in the session, in the place that is remembered for files of its kind. */
    void show(const LoadedModel& model);

    /** Shows a model in the session that has y up and is measured in metres, as made-up ones are; null shows none. */
    void show(const osg::NodePtr& model);

    /** Whether there is a model whose place can be chosen. */
    bool isPlaceable() const { return m_isPlaceable; }

    /** The place of the model that is shown. */
    const ModelPlacement& getPlacement() const { return m_placement; }
    bool isUpAxisStated() const { return m_isUpAxisStated; }
    bool isUnitStated() const { return m_isUnitStated; }

    /** Turns the model that is shown. Nothing happens without one that is placeable. */
    void setUpAxis(UpAxis upAxis);

    /** Scales the model that is shown; 0 says that its unit is not known. */
    void setMetresPerUnit(double metresPerUnit);

    /** The unit that lengths are shown in. */
    LengthUnit getLengthUnit() const { return m_lengthUnit; }
    void setLengthUnit(LengthUnit unit);

    /** Returns what writes lengths of the session's scene. */
    LengthFormat getLengthFormat() const;

    /** Returns the edges of the model in the user's unit; empty without a model. */
    QString describeSize() const;

signals:
    /** The place of the model or the unit of lengths is another one. */
    void changed();

private:
    void tellChanged();
    void place(const ModelPlacement& placement);
    QString keyOf(const char* what) const;
    void remember(const char* what, const QVariant& value);

    ViewerSession& m_session;
    QSettings* m_settings = nullptr;
    LengthUnit m_lengthUnit = LengthUnit::Metre;
    QString m_extension; ///< of the model that is shown
    ModelPlacement m_placement;
    bool m_isPlaceable = false;
    bool m_isUpAxisStated = false;
    bool m_isUnitStated = false;
};

} // namespace quon::viewer

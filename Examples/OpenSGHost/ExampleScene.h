// SPDX-License-Identifier: MIT
#pragma once

#include <Interaction/BoxSelectionVisualisation.h>
#include <Interaction/HighlightSelectionVisualisation.h>

#include <OpenSG/OSGConfig.h>

#include <OpenSG/OSGMatrix.h>
#include <OpenSG/OSGNode.h>
#include <OpenSG/OSGRefPtr.h>

namespace quon::opensghost {

/** Three grey blocks in a row: one selected as a box, one locked and selected as a box, one highlighted. */
class ExampleScene {
public:
    ExampleScene();
    ~ExampleScene();

    ExampleScene(const ExampleScene&) = delete;
    ExampleScene& operator=(const ExampleScene&) = delete;

    osg::NodePtr getRoot() const { return m_root.get(); }
    /** Takes the selection out of the scene. */
    void deselect();

    static osg::Matrix getView();
    static osg::Matrix getProjection();

private:
    osg::RefPtr<osg::NodePtr> m_root;
    interaction::BoxSelectionVisualisation m_boxes;
    interaction::HighlightSelectionVisualisation m_highlight;
};

} // namespace quon::opensghost

// SPDX-License-Identifier: MIT
#include "Support/ShownSelection.h"

#include <algorithm>

namespace quon::benchmarks {

std::string getName(const Shown shown)
{
    switch (shown) {
    case Shown::Nothing:
        return "nothing";
    case Shown::Box:
        return "box";
    case Shown::Highlight:
        return "highlight";
    case Shown::Both:
        return "both";
    }
    return {};
}

ShownSelection::ShownSelection(const Shown shown, const osg::NodePtr& root)
    : m_model("selection")
    , m_root(root)
{
    if (shown == Shown::Box || shown == Shown::Both) {
        m_box = std::make_unique<interaction::BoxSelectionVisualisation>();
        attach(m_box.get());
    }
    if (shown == Shown::Highlight || shown == Shown::Both) {
        m_highlight = std::make_unique<interaction::HighlightSelectionVisualisation>();
        attach(m_highlight.get());
    }
}

ShownSelection::~ShownSelection()
{
    // Boxes that are in use outlive their visualisation.
    m_model.clearSelection();
    const osg::CPEditor edit(m_root, osg::Node::ChildrenFieldMask);
    for (interaction::SelectionVisualisation* visualisation : m_visualisations) {
        osg::NodePtr shown = visualisation->getVisualisation();
        m_root->subChild(shown);
    }
}

bool ShownSelection::shows(const std::size_t count) const
{
    return m_model.getSelection().size() == count &&
           std::all_of(m_visualisations.begin(), m_visualisations.end(), [count](auto* visualisation) {
               return visualisation->getVisualisation()->getNChildren() == count;
           });
}

void ShownSelection::attach(interaction::SelectionVisualisation* visualisation)
{
    m_model.addVisualisation(visualisation);
    m_visualisations.push_back(visualisation);
    const osg::CPEditor edit(m_root, osg::Node::ChildrenFieldMask);
    m_root->addChild(visualisation->getVisualisation());
}

} // namespace quon::benchmarks

// SPDX-License-Identifier: MIT
//
// The bytes are operations of selection models, of the visualisations attached to them, and of a scene that changes
// below their feet: nodes go while they are selected, cores are shared, taken away and replaced, and numbers are
// anything. Left out is what the headers forbid: the handle of a node that is gone reaches no visualisation, not even
// in a call that destroys the node before it comes to it; nothing above a visualisation's root is selected; no node
// becomes its own ancestor.
#include "Support/ByteReader.h"
#include "Support/Fuzzer.h"
#include "Support/Require.h"

#include <Interaction/BoxSelectionVisualisation.h>
#include <Interaction/HighlightSelectionVisualisation.h>
#include <Interaction/NodeSelectionModel.h>
#include <Interaction/SelectionManager.h>
#include <InteractionTesting/SceneBuilder.h>
#include <SceneUtilities/koNodeUtils.h>

#include <OpenSG/OSGConfig.h>

#include <OpenSG/OSGBaseFunctions.h>
#include <OpenSG/OSGChangeList.h>
#include <OpenSG/OSGFieldContainerFactory.h>
#include <OpenSG/OSGGeometry.h>
#include <OpenSG/OSGGroup.h>
#include <OpenSG/OSGMaterialGroup.h>
#include <OpenSG/OSGMaterialPool.h>
#include <OpenSG/OSGNode.h>
#include <OpenSG/OSGSimpleMaterial.h>
#include <OpenSG/OSGThread.h>
#include <OpenSG/OSGTransform.h>
#include <OpenSG/OSGUberCamera.h>
#include <OpenSG/OSGUberLight.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <limits>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <utility>
#include <vector>

namespace {

using quon::fuzzing::ByteReader;
using quon::fuzzing::require;
using quon::interaction::AbstractSelectionVisualisation;
using quon::interaction::BoxSelectionVisualisation;
using quon::interaction::HighlightSelectionVisualisation;
using quon::interaction::NodeSelectionModel;
using quon::interaction::SelectionManager;
using quon::testing::exists;
using quon::testing::NodeRef;

constexpr std::size_t visualisationCount = 4; // two of boxes, two of highlights
constexpr std::size_t modelCount = 3;
constexpr std::size_t mostNodes = 120;
constexpr osg::UInt32 longestChain = 300;

const std::array<std::string, modelCount> modelNames = {"selection", "", "\xFF:other"};
const std::array<float, 10> oddNumbers = {0,
                                          1,
                                          -1,
                                          0.5F,
                                          1e-7F,
                                          std::numeric_limits<float>::max(),
                                          std::numeric_limits<float>::denorm_min(),
                                          std::numeric_limits<float>::infinity(),
                                          -std::numeric_limits<float>::infinity(),
                                          std::numeric_limits<float>::quiet_NaN()};
const std::array<osg::UInt32, 5> masks = {0xFFFFFFFF, 0xFFFFFFFF, 0, 1, 0xFFFFFFFE};

osg::FieldContainerPtr containerOf(const osg::UInt32 id)
{
    return osg::FieldContainerFactory::the()->getContainer(id);
}

/** A visualisation whose boxes or copies are known by their ids. */
template <class Base>
class Known final : public Base {
public:
    explicit Known(std::set<osg::UInt32>& made)
        : m_made(made)
    {}

    osg::NodePtr createVisualisation(const osg::NodePtr& node) override
    {
        const osg::NodePtr visualisation = Base::createVisualisation(node);
        m_made.insert(osg::getContainerId(visualisation));
        return visualisation;
    }

private:
    std::set<osg::UInt32>& m_made;
};

/** A visualisation, and what must be known of it to judge its books. */
struct Visualisation {
    std::unique_ptr<BoxSelectionVisualisation> boxes;
    std::unique_ptr<HighlightSelectionVisualisation> highlights;
    std::vector<osg::SimpleMaterialPtr> keptMaterials; ///< of which one reference outlives it
    std::set<osg::UInt32> made;
    std::vector<std::size_t> models; ///< that it is attached to, as often as it is
    bool isOnItsOwn = false;         ///< whether somebody else told it about nodes since it was attached
    bool isPlain = true;             ///< whether nobody hid it or touched what is below its root
    std::size_t guests = 0;          ///< nodes that the host put below its root, or more

    AbstractSelectionVisualisation& get() const
    {
        return boxes != nullptr ? static_cast<AbstractSelectionVisualisation&>(*boxes) : *highlights;
    }
};

/** A node that may be selected; the handle is of no use when the id is gone. */
struct Candidate {
    osg::NodePtr node;
    osg::UInt32 id;
    bool isOwn; ///< made here, not by a visualisation
};

class World {
public:
    explicit World(ByteReader& bytes)
        : m_bytes(bytes)
        , m_endsInUse(bytes.takeFlag())
        , m_containers(osg::FieldContainerFactory::the()->getLiveContainerCount())
        , m_root(quon::testing::makeNode(osg::Group::create()))
        , m_material(osg::SimpleMaterial::create())
    {
        m_model = quon::testing::addChild(m_root, osg::Group::create());
        for (std::size_t index = 0; index < visualisationCount; ++index) {
            makeVisualisation(index);
        }
        for (std::size_t index = 0; index < modelCount; ++index) {
            m_manager.createSelectionModel(modelNames[index]);
        }
    }

    World(const World&) = delete;
    World& operator=(const World&) = delete;

    void run()
    {
        while (!m_bytes.isEmpty()) {
            operate();
            forgetDestroyed();
            requireBooks();
        }
    }

    void finish()
    {
        for (std::size_t index = 0; index < visualisationCount; ++index) {
            Visualisation& each = m_visualisations[index];
            if (!m_endsInUse) {
                each.get().removeAllNodes();
                forgetDestroyed();
                require(each.get().getVisualisation()->getNChildren() == 0,
                        "nothing is below the root after all is gone");
                for (const Candidate& candidate : m_candidates) {
                    require(!each.get().hasNode(candidate.node), "nothing is tracked after all is gone");
                }
            }
            destroy(each);
        }
        for (const std::string& name : modelNames) {
            m_manager.removeSelectionModel(m_manager.getSelectionModel(name));
        }
        m_root = osg::NullFC;
        m_material = osg::NullFC;
        releaseLeftBoxes();
        osg::Thread::getCurrentChangeList()->clearAll();
        require(osg::FieldContainerFactory::the()->getLiveContainerCount() == m_containers,
                "as many containers are left as there were");
    }

private:
    void operate()
    {
        static const std::array<void (World::*)(), 40> operations = {&World::addNode,
                                                                     &World::addNode,
                                                                     &World::addChain,
                                                                     &World::reparent,
                                                                     &World::reparent,
                                                                     &World::destroyNode,
                                                                     &World::destroyNode,
                                                                     &World::replaceCore,
                                                                     &World::replaceCore,
                                                                     &World::shareCore,
                                                                     &World::move,
                                                                     &World::editPositions,
                                                                     &World::mask,
                                                                     &World::mask,
                                                                     &World::lock,
                                                                     &World::putBelowVisualisation,
                                                                     &World::adopt,
                                                                     &World::adopt,
                                                                     &World::select,
                                                                     &World::select,
                                                                     &World::select,
                                                                     &World::selectMany,
                                                                     &World::deselect,
                                                                     &World::deselect,
                                                                     &World::deselectOwnEntry,
                                                                     &World::deselectMany,
                                                                     &World::update,
                                                                     &World::update,
                                                                     &World::clearSelection,
                                                                     &World::setSelection,
                                                                     &World::setSelectionMany,
                                                                     &World::updateAll,
                                                                     &World::attach,
                                                                     &World::attach,
                                                                     &World::detach,
                                                                     &World::replaceModel,
                                                                     &World::show,
                                                                     &World::changeLook,
                                                                     &World::tellDirectly,
                                                                     &World::cloneOrMakeAnew};
        (this->*m_bytes.pickOf(operations))();
    }

    // The scene.

    float number() { return m_bytes.pick(4) == 3 ? m_bytes.take<float>() : m_bytes.pickOf(oddNumbers); }

    /** Null when there is none, and sometimes else. */
    osg::NodePtr pickNode()
    {
        const std::size_t choice = m_bytes.pick(128);
        return m_candidates.empty() || choice == 127 ? osg::NodePtr() : m_candidates[choice % m_candidates.size()].node;
    }

    osg::NodePtr pickOwnNode()
    {
        const std::size_t choice = m_bytes.pick(128);
        const bool isOther = m_candidates.empty() || !m_candidates[choice % m_candidates.size()].isOwn;
        return isOther ? osg::NodePtr() : m_candidates[choice % m_candidates.size()].node;
    }

    osg::NodeCorePtr makeCore()
    {
        switch (m_bytes.pick(10)) {
        case 0:
            return osg::Group::create();
        case 1:
        case 2: {
            const osg::TransformPtr transform = osg::Transform::create();
            setMatrix(transform);
            return transform;
        }
        case 3:
            m_hadCamera = true;
            return osg::UberCamera::create();
        case 4:
            return osg::UberLight::create();
        case 5:
            return osg::MaterialGroup::create();
        case 6:
            return osg::MaterialPool::create();
        case 7:
            return osg::Geometry::create();
        case 8:
            return osg::NullFC;
        default: {
            const float minimum = number();
            return quon::testing::makeExtent(osg::Pnt3f(minimum, 0, number()), osg::Pnt3f(1, number(), 1));
        }
        }
    }

    void setMatrix(const osg::TransformPtr& transform)
    {
        const osg::CPEditor edit(transform, osg::Transform::MatrixFieldMask);
        osg::Matrix matrix;
        const auto column = static_cast<osg::UInt32>(m_bytes.pick(4));
        const auto row = static_cast<osg::UInt32>(m_bytes.pick(4));
        matrix[column][row] = number();
        matrix[3][0] = number();
        transform->setMatrix(matrix);
    }

    void addCandidate(const osg::NodePtr& node, const bool isOwn)
    {
        m_candidates.push_back({node, osg::getContainerId(node), isOwn});
    }

    void addNode()
    {
        const osg::NodePtr parent = pickOwnNode();
        if (m_candidates.size() < mostNodes) {
            addCandidate(quon::testing::addChild(parent == osg::NullFC ? m_model : parent, makeCore()), true);
        }
    }

    // Of which the first and the last may be selected.
    void addChain()
    {
        const osg::UInt32 length = std::min<osg::UInt32>(m_bytes.take<std::uint16_t>(), longestChain);
        const bool isWide = m_bytes.takeFlag();
        if (m_hasChain || m_candidates.size() + 2 > mostNodes) {
            return;
        }
        m_hasChain = true;
        const osg::NodePtr first = quon::testing::addChild(m_model, osg::Group::create());
        osg::NodePtr last = first;
        for (osg::UInt32 index = 0; index < length; ++index) {
            last = quon::testing::addChild(isWide ? first : last, osg::Group::create());
        }
        addCandidate(first, true);
        if (last != first) {
            addCandidate(last, true);
        }
    }

    static bool isBelow(osg::NodePtr node, const osg::NodePtr& ancestor)
    {
        while (node != osg::NullFC && node != ancestor) {
            node = node->getParent();
        }
        return node != osg::NullFC;
    }

    void reparent()
    {
        const osg::NodePtr node = pickOwnNode();
        osg::NodePtr parent = pickOwnNode();
        parent = parent == osg::NullFC ? m_model : parent;
        const osg::UInt32 place = m_bytes.takeByte();
        if (node != osg::NullFC && !isBelow(parent, node)) {
            const osg::CPEditor edit(parent, osg::Node::ChildrenFieldMask);
            place % 2 == 0 ? parent->addChild(node) : parent->insertChild(place, node);
        }
    }

    void destroyNode()
    {
        const osg::NodePtr node = pickOwnNode();
        if (node != osg::NullFC) {
            const osg::NodePtr parent = node->getParent();
            const osg::CPEditor edit(parent, osg::Node::ChildrenFieldMask);
            parent->subChild(node);
        }
    }

    static void setCore(const osg::NodePtr& node, const osg::NodeCorePtr& core)
    {
        const osg::CPEditor edit(node, osg::Node::CoreFieldMask);
        node->setCore(core);
    }

    void replaceCore()
    {
        const osg::NodePtr node = pickNode();
        if (node != osg::NullFC) {
            setCore(node, makeCore());
        }
    }

    void shareCore()
    {
        const osg::NodePtr node = pickNode();
        const osg::NodePtr other = pickNode();
        if (node != osg::NullFC && other != osg::NullFC) {
            setCore(node, other->getCore());
        }
    }

    template <class CorePtr>
    static CorePtr coreOf(const osg::NodePtr& node)
    {
        return node == osg::NullFC || node->getCore() == osg::NullFC ? CorePtr() : CorePtr::dcast(node->getCore());
    }

    void move()
    {
        const auto transform = coreOf<osg::TransformPtr>(pickNode());
        if (transform != osg::NullFC) {
            setMatrix(transform);
        }
    }

    void editPositions()
    {
        const auto geometry = coreOf<osg::GeometryPtr>(pickNode());
        if (geometry == osg::NullFC) {
            return;
        }
        const osg::CPEditor editGeometry(geometry, osg::Geometry::PositionsFieldMask);
        const auto positions = geometry->getPositions() == osg::NullFC
                                   ? osg::GeoPositions3fPtr()
                                   : osg::GeoPositions3fPtr::dcast(geometry->getPositions());
        const std::size_t kind = m_bytes.pick(4);
        if (kind == 0) {
            geometry->setPositions(osg::NullFC);
        } else if (positions != osg::NullFC) {
            const osg::CPEditor edit(positions);
            positions->resize(m_bytes.pick(10));
            if (positions->getSize() > 0) {
                positions->setValue(osg::Pnt3f(number(), number(), 0), 0);
            }
        }
    }

    void mask()
    {
        const osg::NodePtr node = pickNode();
        const osg::UInt32 value = m_bytes.pickOf(masks);
        if (node != osg::NullFC) {
            const osg::CPEditor edit(node, osg::Node::TravMaskFieldMask);
            node->setTravMask(value);
        }
    }

    void lock()
    {
        const osg::NodePtr node = pickNode();
        koNodeUtils::setIsEditable(node, m_bytes.takeFlag());
    }

    void putBelowVisualisation()
    {
        const osg::NodePtr node = pickOwnNode();
        Visualisation& visualisation = pickVisualisation();
        if (node != osg::NullFC) {
            const osg::NodePtr root = visualisation.get().getVisualisation();
            const osg::CPEditor edit(root, osg::Node::ChildrenFieldMask);
            root->addChild(node);
            ++visualisation.guests;
            // It may be taken away again, or go with the rest.
            visualisation.isPlain = false;
        }
    }

    // What a visualisation made may be selected as well.
    void adopt()
    {
        Visualisation& visualisation = pickVisualisation();
        osg::NodePtr node = visualisation.get().getVisualisation();
        for (std::size_t depth = m_bytes.pick(3) + 1; depth > 0 && node != osg::NullFC; --depth) {
            const osg::UInt32 count = node->getNChildren();
            const osg::UInt32 place = m_bytes.takeByte();
            node = count == 0 ? osg::NodePtr() : node->getChild(place % count);
        }
        const bool isKnown = std::any_of(m_candidates.begin(), m_candidates.end(),
                                         [&](const Candidate& each) { return each.node == node; });
        if (node != osg::NullFC && !isKnown && m_candidates.size() < mostNodes) {
            visualisation.isPlain = false;
            addCandidate(node, false);
        }
    }

    // Handles that a model still has of nodes that are gone are remembered: a new node may get the same.
    void forgetDestroyed()
    {
        const auto isGone = [this](const Candidate& candidate) {
            if (exists(candidate.id)) {
                return false;
            }
            for (std::size_t index = 0; index < modelCount; ++index) {
                if (model(index).getSelection().count(candidate.node) != 0) {
                    m_stale[index].insert(candidate.node);
                }
            }
            return true;
        };
        m_candidates.erase(std::remove_if(m_candidates.begin(), m_candidates.end(), isGone), m_candidates.end());
    }

    // Models.

    NodeSelectionModel& model(const std::size_t index) { return *m_manager.getSelectionModel(modelNames[index]); }
    std::size_t pickModel() { return m_bytes.pick(modelCount); }

    bool hasVisualisation(const std::size_t modelIndex) const
    {
        return std::any_of(m_visualisations.begin(), m_visualisations.end(), [&](const Visualisation& each) {
            return std::count(each.models.begin(), each.models.end(), modelIndex) != 0;
        });
    }

    /** Whether no visualisation can destroy the node while it lets go of others. */
    bool isFirm(const osg::NodePtr& node) const
    {
        if (node == osg::NullFC || m_boxes.count(osg::getContainerId(node)) != 0) {
            return true;
        }
        return std::none_of(m_visualisations.begin(), m_visualisations.end(),
                            [&](const Visualisation& each) { return isBelow(node, each.get().getVisualisation()); });
    }

    osg::NodePtr pickFirmNode()
    {
        const osg::NodePtr node = pickNode();
        return isFirm(node) ? node : osg::NodePtr();
    }

    std::vector<osg::NodePtr> pickFirmNodes()
    {
        std::vector<osg::NodePtr> nodes;
        for (std::size_t count = m_bytes.pick(8); count > 0; --count) {
            nodes.push_back(pickFirmNode());
        }
        return nodes;
    }

    // Not with a node whose handle the model still has from another one, which is gone.
    template <class Call>
    void tell(const std::vector<osg::NodePtr>& nodes, const std::size_t index, const Call& call)
    {
        const bool isKnown = std::none_of(nodes.begin(), nodes.end(),
                                          [&](const osg::NodePtr& node) { return m_stale[index].count(node) != 0; });
        if (isKnown) {
            call(model(index));
        }
    }

    void select()
    {
        const std::size_t index = pickModel();
        const osg::NodePtr node = pickNode();
        tell({node}, index, [&](NodeSelectionModel& target) { target.addNode(node); });
    }

    void selectMany()
    {
        const std::size_t index = pickModel();
        const std::vector<osg::NodePtr> nodes = pickFirmNodes();
        tell(nodes, index, [&](NodeSelectionModel& target) { target.addNodes(nodes); });
    }

    void deselect()
    {
        const std::size_t index = pickModel();
        const osg::NodePtr node = pickNode();
        tell({node}, index, [&](NodeSelectionModel& target) { target.removeNode(node); });
    }

    void deselectMany()
    {
        const std::size_t index = pickModel();
        const std::vector<osg::NodePtr> nodes = pickFirmNodes();
        tell(nodes, index, [&](NodeSelectionModel& target) { target.removeNodes(nodes); });
    }

    void update()
    {
        const std::size_t index = pickModel();
        const osg::NodePtr node = pickNode();
        tell({node}, index, [&](NodeSelectionModel& target) { target.updateNode(node); });
    }

    void deselectOwnEntry()
    {
        const std::size_t index = pickModel();
        const std::set<osg::NodePtr>& selection = model(index).getSelection();
        if (selection.empty()) {
            return;
        }
        const auto entry =
            std::next(selection.begin(), static_cast<std::ptrdiff_t>(m_bytes.takeByte() % selection.size()));
        const osg::NodePtr node = *entry;
        if (m_stale[index].count(node) == 0 || !hasVisualisation(index)) {
            model(index).removeNode(*entry);
            m_stale[index].erase(node);
        }
    }

    void clearSelection()
    {
        const std::size_t index = pickModel();
        model(index).clearSelection();
        m_stale[index].clear();
        settle(index);
    }

    void setSelection()
    {
        const std::size_t index = pickModel();
        model(index).setSelection(pickFirmNode());
        m_stale[index].clear();
        settle(index);
    }

    void setSelectionMany()
    {
        const std::size_t index = pickModel();
        model(index).setSelection(pickFirmNodes());
        m_stale[index].clear();
        settle(index);
    }

    // The visualisations of the model follow it again, whatever else they were told.
    void settle(const std::size_t modelIndex)
    {
        for (Visualisation& each : m_visualisations) {
            if (each.models == std::vector<std::size_t>{modelIndex}) {
                each.isOnItsOwn = false;
            }
        }
    }

    void updateAll()
    {
        const std::size_t index = pickModel();
        if (m_bytes.takeFlag()) {
            model(index).updateVisualisations();
        } else {
            model(index).updateVisualisation(&pickVisualisation().get());
        }
    }

    void attach()
    {
        Visualisation& visualisation = pickVisualisation();
        const std::size_t index = pickModel();
        const std::set<osg::NodePtr>& selection = model(index).getSelection();
        if (m_stale[index].empty() && std::all_of(selection.begin(), selection.end(),
                                                  [this](const osg::NodePtr& node) { return isFirm(node); })) {
            visualisation.isOnItsOwn = false;
            visualisation.models.push_back(index);
            model(index).addVisualisation(&visualisation.get());
        }
    }

    void detach()
    {
        Visualisation& visualisation = pickVisualisation();
        const std::size_t index = pickModel();
        model(index).removeVisualisation(&visualisation.get());
        // Also where it was not attached: then it knows nothing of what its own model has selected.
        visualisation.isOnItsOwn = true;
        const auto attached = std::find(visualisation.models.begin(), visualisation.models.end(), index);
        if (attached != visualisation.models.end()) {
            visualisation.models.erase(attached);
        }
    }

    void replaceModel()
    {
        const std::size_t index = pickModel();
        m_manager.removeSelectionModel(&model(index));
        require(m_manager.getSelectionModel(modelNames[index]) == nullptr, "a model that was removed is gone");
        m_manager.createSelectionModel(modelNames[index]);
        m_stale[index].clear();
        for (Visualisation& each : m_visualisations) {
            const auto last = std::remove(each.models.begin(), each.models.end(), index);
            // What it shows stays.
            each.isOnItsOwn = each.isOnItsOwn || last != each.models.end();
            each.models.erase(last, each.models.end());
        }
    }

    // Visualisations.

    Visualisation& pickVisualisation() { return m_visualisations[m_bytes.pick(visualisationCount)]; }

    void makeVisualisation(const std::size_t index)
    {
        Visualisation& made = m_visualisations[index];
        osg::Thread::getCurrentChangeList()->clearAll();
        if (index < visualisationCount / 2) {
            made.boxes = std::make_unique<Known<BoxSelectionVisualisation>>(m_boxes);
        } else {
            made.highlights = std::make_unique<Known<HighlightSelectionVisualisation>>(made.made);
        }
        const osg::ChangeList* const changes = osg::Thread::getCurrentChangeList();
        for (auto id = changes->beginCreated(); id != changes->endCreated(); ++id) {
            const osg::FieldContainerPtr container = containerOf(*id);
            const auto material =
                container == osg::NullFC ? osg::SimpleMaterialPtr() : osg::SimpleMaterialPtr::dcast(container);
            if (material != osg::NullFC) {
                made.keptMaterials.push_back(material);
            }
        }
        const osg::CPEditor edit(m_root.get(), osg::Node::ChildrenFieldMask);
        m_root->addChild(made.get().getVisualisation());
    }

    // Gives back in its place what it keeps on purpose, but for boxes in use, which somebody may be looking at.
    void destroy(Visualisation& visualisation)
    {
        for (const std::size_t index : visualisation.models) {
            model(index).removeVisualisation(&visualisation.get());
        }
        const NodeRef root(visualisation.get().getVisualisation());
        visualisation.boxes.reset();
        visualisation.highlights.reset();
        {
            const osg::CPEditor edit(m_root.get(), osg::Node::ChildrenFieldMask);
            m_root->subChild(root);
        }
        for (osg::SimpleMaterialPtr& material : visualisation.keptMaterials) {
            osg::subRefCP(material);
        }
        visualisation = Visualisation();
    }

    // A box that was in use at the end of its visualisation, or whose node was gone when all were removed.
    void releaseLeftBoxes()
    {
        for (const osg::UInt32 id : m_boxes) {
            if (exists(id)) {
                osg::NodePtr box = osg::NodePtr::dcast(containerOf(id));
                require(osg::getRefCount(box) == 1, "a box that is left has its own reference and no other");
                osg::subRefCP(box);
            }
        }
    }

    void show()
    {
        Visualisation& visualisation = pickVisualisation();
        const std::size_t kind = m_bytes.pick(3);
        visualisation.isPlain = false;
        if (kind < 2) {
            visualisation.get().setVisible(kind == 1);
            require(visualisation.get().isVisible() == (kind == 1), "a visualisation is shown or hidden as wanted");
        } else {
            const osg::NodePtr root = visualisation.get().getVisualisation();
            const osg::CPEditor edit(root, osg::Node::TravMaskFieldMask);
            root->setTravMask(m_bytes.pickOf(masks));
        }
    }

    void changeLook()
    {
        const Visualisation& visualisation = pickVisualisation();
        const std::size_t kind = m_bytes.pick(6);
        const osg::Color3f colour(number(), 0, 0);
        if (visualisation.boxes != nullptr) {
            changeBoxes(*visualisation.boxes, kind, colour);
        } else {
            changeHighlights(*visualisation.highlights, kind, colour);
        }
    }

    void changeBoxes(BoxSelectionVisualisation& boxes, const std::size_t kind, const osg::Color3f& colour)
    {
        switch (kind) {
        case 0:
            boxes.setColor(colour);
            break;
        case 1:
            boxes.setLockedColor(colour);
            break;
        case 2:
            boxes.setTransparency(colour[0], m_bytes.take<int>());
            break;
        case 3:
            boxes.setOverlay(m_bytes.takeFlag());
            break;
        case 4:
            boxes.setMarkerSize(colour[0]);
            break;
        default:
            boxes.clear();
            break;
        }
    }

    void changeHighlights(HighlightSelectionVisualisation& highlights, const std::size_t kind,
                          const osg::Color3f& colour)
    {
        switch (kind) {
        case 0:
            highlights.setColor(colour);
            break;
        case 1:
            highlights.setOverlay(m_bytes.takeFlag());
            break;
        default:
            highlights.setMaterial(kind == 2 ? osg::MaterialPtr(m_material.get()) : osg::MaterialPtr());
            require(highlights.getMaterial() != osg::NullFC, "there is always a material");
            break;
        }
    }

    // As a host may that has no model.
    void tellDirectly()
    {
        Visualisation& visualisation = pickVisualisation();
        const std::size_t kind = m_bytes.pick(5);
        const osg::NodePtr node = pickNode();
        visualisation.isOnItsOwn = true;
        switch (kind) {
        case 0:
            visualisation.get().addNode(node);
            break;
        case 1:
            visualisation.get().removeNode(node);
            break;
        case 2:
            visualisation.get().updateNode(node);
            break;
        case 3:
            visualisation.get().updateAllNodes();
            break;
        default:
            visualisation.get().removeAllNodes();
            break;
        }
    }

    void cloneOrMakeAnew()
    {
        if (m_bytes.takeFlag()) {
            const NodeRef copy(quon::interaction::cloneSelectionTree(pickNode()));
            return;
        }
        const std::size_t index = m_bytes.pick(visualisationCount);
        destroy(m_visualisations[index]);
        makeVisualisation(index);
    }

    // What must hold after every operation.

    void requireBooks()
    {
        for (const Visualisation& each : m_visualisations) {
            if (each.models.size() != 1 || each.isOnItsOwn) {
                continue;
            }
            const std::size_t index = each.models.front();
            const std::set<osg::NodePtr>& selection = model(index).getSelection();
            for (const Candidate& candidate : m_candidates) {
                require(m_stale[index].count(candidate.node) != 0 ||
                            each.get().hasNode(candidate.node) == (selection.count(candidate.node) != 0),
                        "a visualisation tracks what its model has selected");
            }
            const std::size_t selected = selection.size() - selection.count(osg::NodePtr());
            const std::size_t children = each.get().getVisualisation()->getNChildren();
            require(children <= selected + each.guests, "nothing is below the root that nobody selected");
            if (each.isPlain && m_stale[index].empty() && !(m_hadCamera && each.boxes != nullptr)) {
                require(children == selected, "each selected node has something below the root");
            }
        }
    }

    ByteReader& m_bytes;
    bool m_endsInUse; ///< whether visualisations are destroyed while they show something
    osg::UInt32 m_containers;
    NodeRef m_root;
    osg::NodePtr m_model;
    osg::RefPtr<osg::SimpleMaterialPtr> m_material;
    std::vector<Candidate> m_candidates;
    std::array<Visualisation, visualisationCount> m_visualisations;
    std::set<osg::UInt32> m_boxes; ///< all that were ever made
    SelectionManager m_manager;
    std::array<std::set<osg::NodePtr>, modelCount> m_stale;
    bool m_hadCamera = false;
    bool m_hasChain = false;
};

} // namespace

int LLVMFuzzerInitialize(int* argc, char*** argv)
{
    osg::ChangeList::setReadWriteDefault();
    osg::osgInit(*argc, *argv);
    return 0;
}

int LLVMFuzzerTestOneInput(const std::uint8_t* data, const std::size_t size)
{
    ByteReader bytes(data, size);
    World world(bytes);
    world.run();
    world.finish();
    return 0;
}

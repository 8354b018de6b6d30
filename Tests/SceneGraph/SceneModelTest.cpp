// SPDX-License-Identifier: MIT
#include "SceneParts.h"
#include "Support/RapidCheckConfiguration.h"

#include <OpenSG/OSGGroup.h>

#include <gtest/gtest.h>
#include <rapidcheck.h>
#include <rapidcheck/gtest.h>

#include <algorithm>
#include <cstddef>
#include <vector>

// Random sequences of operations, compared with plain vectors after each step.
namespace {

using namespace osg;
using quon::testing::Bounds;
using quon::testing::hold;
using quon::testing::makePoints;
using quon::testing::worldBounds;

std::size_t pick(const std::size_t count)
{
    return *rc::gen::inRange<std::size_t>(0, count);
}

bool happens(const int percent)
{
    return *rc::gen::inRange(0, 100) < percent;
}

// Parents with plain vectors of children. No node is ever its own ancestor: parents never become children.
class ChildrenModel {
public:
    explicit ChildrenModel(const std::size_t parents, const std::size_t children)
        : m_lists(parents)
        , m_owner(children, nobody)
    {
        for (std::size_t i = 0; i < parents; ++i) {
            m_parents.push_back(hold(Node::create()));
        }
        for (std::size_t i = 0; i < children; ++i) {
            m_children.push_back(hold(Node::create()));
        }
    }

    void add(const std::size_t parent, const std::size_t child)
    {
        m_parents[parent]->addChild(m_children[child]);
        forget(child);
        m_lists[parent].push_back(child);
        m_owner[child] = parent;
    }

    void insert(const std::size_t parent, const std::size_t child, const std::size_t index)
    {
        // Inserting within one parent counts the index before the child leaves; OpenSG does not define that.
        if (m_owner[child] == parent) {
            return;
        }
        m_parents[parent]->insertChild(static_cast<UInt32>(index), m_children[child]);
        forget(child);
        m_lists[parent].insert(m_lists[parent].begin() + static_cast<std::ptrdiff_t>(index), child);
        m_owner[child] = parent;
    }

    void remove(const std::size_t child)
    {
        if (m_owner[child] == nobody) {
            return;
        }
        m_parents[m_owner[child]]->subChild(m_children[child]);
        forget(child);
    }

    void removeAt(const std::size_t parent, const std::size_t index)
    {
        m_parents[parent]->subChild(static_cast<UInt32>(index));
        if (index < m_lists[parent].size()) {
            forget(m_lists[parent][index]);
        }
    }

    void replace(const std::size_t parent, const std::size_t index, const std::size_t child)
    {
        auto& list = m_lists[parent];
        const bool isOwn = m_owner[child] == parent;
        // A child of the same parent leaves first: the index must hold in the shorter list too.
        if (isOwn && index < list.size() && index + 1 >= list.size()) {
            return;
        }
        m_parents[parent]->replaceChild(static_cast<UInt32>(index), m_children[child]);
        if (index >= list.size()) {
            return;
        }
        forget(child);
        m_owner[list[index]] = nobody;
        list[index] = child;
        m_owner[child] = parent;
    }

    void check() const
    {
        for (std::size_t parent = 0; parent < m_parents.size(); ++parent) {
            const auto& list = m_lists[parent];
            const NodePtr node = m_parents[parent];
            RC_ASSERT(node->getNChildren() == list.size());
            for (std::size_t i = 0; i < list.size(); ++i) {
                RC_ASSERT(node->getChild(static_cast<UInt32>(i)) == m_children[list[i]].get());
                RC_ASSERT(node->findChild(m_children[list[i]]) == static_cast<Int32>(i));
            }
        }
        for (std::size_t child = 0; child < m_children.size(); ++child) {
            const NodePtr node = m_children[child];
            const bool isOwned = m_owner[child] != nobody;
            RC_ASSERT(node.getRefCount() == (isOwned ? 2 : 1));
            RC_ASSERT(node->getParent() == (isOwned ? m_parents[m_owner[child]].get() : NodePtr()));
        }
    }

    std::size_t childrenOf(const std::size_t parent) const { return m_lists[parent].size(); }

private:
    static constexpr std::size_t nobody = static_cast<std::size_t>(-1);

    void forget(const std::size_t child)
    {
        if (m_owner[child] != nobody) {
            auto& list = m_lists[m_owner[child]];
            list.erase(std::find(list.begin(), list.end(), child));
            m_owner[child] = nobody;
        }
    }

    std::vector<RefPtr<NodePtr>> m_parents;
    std::vector<RefPtr<NodePtr>> m_children;
    std::vector<std::vector<std::size_t>> m_lists;
    std::vector<std::size_t> m_owner;
};

class SceneModelTest : public quon::testing::SceneFixture {};

RC_GTEST_FIXTURE_PROP(SceneModelTest, ChildrenAreThoseOfAPlainVector, ())
{
    // Enough children that lists with gaps close them now and then.
    constexpr std::size_t parents = 3;
    constexpr std::size_t children = 120;
    ChildrenModel model(parents, children);
    const std::size_t filled = pick(children);
    for (std::size_t child = 0; child < filled; ++child) {
        model.add(happens(80) ? 0 : pick(parents), child);
    }
    model.check();

    const int steps = *rc::gen::inRange(0, 250);
    const int removal = *rc::gen::inRange(5, 80);
    for (int step = 0; step < steps; ++step) {
        const std::size_t parent = happens(80) ? 0 : pick(parents);
        const std::size_t child = pick(children);
        if (happens(removal)) {
            happens(50) ? model.remove(child) : model.removeAt(parent, pick(model.childrenOf(parent) + 1));
        } else if (happens(40)) {
            model.add(parent, child);
        } else if (happens(50)) {
            model.insert(parent, child, pick(model.childrenOf(parent) + 1));
        } else {
            model.replace(parent, pick(model.childrenOf(parent) + 2), child);
        }
        // Looking after every step would hide mistakes that reading repairs.
        if (happens(30)) {
            model.check();
        }
    }

    model.check();
}

RC_GTEST_FIXTURE_PROP(SceneModelTest, ParentsOfCoresAreThoseOfAPlainVector, ())
{
    constexpr std::size_t coreCount = 3;
    constexpr std::size_t nodeCount = 60;
    constexpr std::size_t none = coreCount;
    std::vector<RefPtr<GroupPtr>> cores;
    std::vector<RefPtr<NodePtr>> nodes(nodeCount);
    std::vector<std::vector<std::size_t>> parents(coreCount + 1);
    for (std::size_t i = 0; i < coreCount; ++i) {
        cores.push_back(hold(Group::create()));
    }
    for (std::size_t i = 0; i < nodeCount; ++i) {
        nodes[i] = Node::create();
        parents[none].push_back(i);
    }

    const int steps = *rc::gen::inRange(0, 300);
    for (int step = 0; step < steps; ++step) {
        const std::size_t node = pick(nodeCount);
        const std::size_t core = pick(coreCount + 1);
        nodes[node]->setCore(core == none ? NodeCorePtr() : NodeCorePtr(cores[core].get()));
        for (auto& list : parents) {
            list.erase(std::remove(list.begin(), list.end(), node), list.end());
        }
        parents[core].push_back(node);

        if (happens(30) || step + 1 == steps) {
            for (std::size_t i = 0; i < coreCount; ++i) {
                RC_ASSERT(cores[i]->getParents().size() == parents[i].size());
                RC_ASSERT(cores[i].get().getRefCount() == static_cast<Int32>(parents[i].size()) + 1);
                for (std::size_t j = 0; j < parents[i].size(); ++j) {
                    RC_ASSERT(cores[i]->getParents()[static_cast<UInt32>(j)] == nodes[parents[i][j]].get());
                }
            }
        }
    }
}

RC_GTEST_FIXTURE_PROP(SceneModelTest, ParentsOfAttachmentsAreThoseOfAPlainVector, ())
{
    constexpr std::size_t attachmentCount = 2;
    constexpr std::size_t nodeCount = 30;
    struct Use {
        std::size_t node;
        UInt16 binding;
    };
    std::vector<RefPtr<GeoPositions3fPtr>> attachments;
    std::vector<RefPtr<NodePtr>> nodes(nodeCount);
    std::vector<std::vector<Use>> uses(attachmentCount);
    // The list of parents loses the first entry for the node, whichever binding that was made for.
    const auto forget = [](std::vector<Use>& list, const std::size_t end, const Use& use) {
        for (std::size_t i = 0; i < end; ++i) {
            if (list[i].node == use.node && list[i].binding == use.binding) {
                const auto first =
                    std::find_if(list.begin(), list.end(), [&use](const Use& other) { return other.node == use.node; });
                std::swap(first->binding, list[i].binding);
                list.erase(first);
                return;
            }
        }
    };
    for (std::size_t i = 0; i < attachmentCount; ++i) {
        attachments.push_back(hold(GeoPositions3f::create()));
    }
    for (auto& node : nodes) {
        node = Node::create();
    }

    const int steps = *rc::gen::inRange(0, 400);
    for (int step = 0; step < steps; ++step) {
        const Use use{pick(nodeCount), static_cast<UInt16>(pick(3))};
        const std::size_t attachment = pick(attachmentCount);
        if (happens(65)) {
            nodes[use.node]->addAttachment(attachments[attachment].get(), use.binding);
            uses[attachment].push_back(use);
            for (std::size_t i = 0; i < attachmentCount; ++i) {
                forget(uses[i], uses[i].size() - (i == attachment ? 1 : 0), use);
            }
        } else if (happens(50)) {
            nodes[use.node]->subAttachment(attachments[attachment].get(), use.binding);
            // Whichever is attached there: all are of one group.
            for (auto& list : uses) {
                forget(list, list.size(), use);
            }
        } else {
            nodes[use.node] = Node::create();
            for (auto& list : uses) {
                list.erase(std::remove_if(list.begin(), list.end(),
                                          [&use](const Use& other) { return other.node == use.node; }),
                           list.end());
            }
        }

        if (happens(3) || step + 1 == steps) {
            for (std::size_t i = 0; i < attachmentCount; ++i) {
                RC_ASSERT(attachments[i]->getParents().size() == uses[i].size());
                RC_ASSERT(attachments[i].get().getRefCount() == static_cast<Int32>(uses[i].size()) + 1);
                for (std::size_t j = 0; j < uses[i].size(); ++j) {
                    RC_ASSERT(attachments[i]->getParents()[static_cast<UInt32>(j)] == nodes[uses[i][j].node].get());
                }
            }
        }
    }
}

// A small tree whose boxes are computed from scratch as well.
class VolumeModel {
public:
    explicit VolumeModel(const std::size_t count)
        : m_items(count)
    {
        for (std::size_t i = 0; i < count; ++i) {
            Item& item = m_items[i];
            // Every third is a geometry, the root and the rest are transforms.
            if (i % 3 == 2) {
                item.points = {point(), point()};
                item.geometry = makePoints(item.points);
                item.node = quon::testing::makeNode(item.geometry);
            } else {
                item.transform = Transform::create();
                item.node = quon::testing::makeNode(item.transform);
            }
            if (i > 0) {
                item.parent = pick(i);
                m_items[item.parent].node->addChild(item.node);
            }
        }
    }

    void step()
    {
        const std::size_t index = pick(m_items.size());
        Item& item = m_items[index];
        if (happens(25) && item.transform != NullFC) {
            item.offset = Vec3f(point());
            Matrix matrix;
            matrix.setTranslate(item.offset);
            item.transform->setMatrix(matrix);
            endEditCP(item.transform, Transform::MatrixFieldMask);
        } else if (happens(30) && item.geometry != NullFC) {
            item.points[1] = point();
            item.geometry->getPositions()->setValue(item.points[1], 1);
            endEditCP(item.geometry, Geometry::PositionsFieldMask);
        } else if (happens(30)) {
            item.isShown = !item.isShown;
            item.node->setTravMask(item.isShown ? 0xFFFFFFFF : 0);
            endEditCP(item.node, Node::TravMaskFieldMask);
        } else if (happens(50) && index > 0) {
            // Parents keep smaller numbers, so no cycle can come about.
            item.parent = pick(index);
            m_items[item.parent].node->addChild(item.node);
            endEditCP(m_items[item.parent].node, Node::ChildrenFieldMask);
        } else {
            checkNode(index);
        }
    }

    void checkAll()
    {
        for (std::size_t i = m_items.size(); i-- > 0;) {
            checkNode(i);
        }
    }

private:
    struct Item {
        RefPtr<NodePtr> node;
        TransformPtr transform;
        GeometryPtr geometry;
        std::size_t parent = 0;
        bool isShown = true;
        Vec3f offset;
        std::vector<Pnt3f> points;
    };

    static Pnt3f point()
    {
        const auto number = [] { return static_cast<Real32>(*rc::gen::inRange(-20, 21)); };
        return Pnt3f(number(), number(), number());
    }

    BoxVolume expectedLocal(const std::size_t index) const
    {
        BoxVolume box;
        for (std::size_t i = index + 1; i < m_items.size(); ++i) {
            if (m_items[i].parent == index && m_items[i].isShown) {
                box.extendBy(expectedLocal(i));
            }
        }
        for (const Pnt3f& itemPoint : m_items[index].points) {
            box.extendBy(itemPoint);
        }
        Matrix matrix;
        matrix.setTranslate(m_items[index].offset);
        box.transform(matrix);
        return box;
    }

    void checkNode(const std::size_t index)
    {
        // A hidden node keeps whatever it had; that is tested with single nodes.
        if (!m_items[index].isShown) {
            return;
        }
        BoxVolume expected = expectedLocal(index);
        for (std::size_t i = index; i != 0;) {
            i = m_items[i].parent;
            Matrix matrix;
            matrix.setTranslate(m_items[i].offset);
            expected.transform(matrix);
        }

        const Bounds bounds = worldBounds(m_items[index].node);

        RC_ASSERT(bounds.isEmpty == expected.isEmpty());
        if (!bounds.isEmpty) {
            RC_ASSERT(bounds.minimum == expected.getMin());
            RC_ASSERT(bounds.maximum == expected.getMax());
        }
    }

    std::vector<Item> m_items;
};

RC_GTEST_FIXTURE_PROP(SceneModelTest, VolumesAreThoseComputedFromScratch, ())
{
    VolumeModel model(2 + pick(24));

    const int steps = *rc::gen::inRange(0, 150);
    for (int step = 0; step < steps; ++step) {
        model.step();
    }

    model.checkAll();
}

} // namespace

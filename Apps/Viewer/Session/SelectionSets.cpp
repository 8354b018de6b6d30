// SPDX-License-Identifier: MIT
#include "Viewer/Session/SelectionSets.h"

#include "Viewer/Session/SceneEditor.h"
#include "Viewer/Session/SelectionKeeper.h"

#include <Interaction/NodeSelectionModel.h>
#include <Interaction/SelectionManager.h>

#include <algorithm>
#include <iterator>
#include <set>
#include <utility>

namespace quon::viewer {

namespace {

using interaction::NodeSelectionModel;
using interaction::SelectionManager;

// Told apart by everybody, also by those who see no difference between red and green; none is the selection's orange.
const osg::Color3f Palette[] = {
    osg::Color3f(0.00F, 0.45F, 0.85F), osg::Color3f(0.80F, 0.20F, 0.55F), osg::Color3f(0.00F, 0.62F, 0.45F),
    osg::Color3f(0.55F, 0.35F, 0.85F), osg::Color3f(0.85F, 0.75F, 0.00F), osg::Color3f(0.10F, 0.70F, 0.90F),
    osg::Color3f(0.80F, 0.10F, 0.10F), osg::Color3f(0.45F, 0.30F, 0.15F),
};

// The selection is drawn over the sets.
constexpr osg::Int32 SortKey = SelectionDisplay::DefaultSortKey - 1;

std::vector<osg::NodePtr> getSelected(const NodeSelectionModel& model)
{
    return {model.getSelection().begin(), model.getSelection().end()};
}

} // namespace

/** A set as it is now. */
struct SelectionSets::Set {
    Id id;
    QString name;
    NodeSelectionModel* model; ///< of the manager
    std::unique_ptr<SelectionKeeper> keeper;
    std::unique_ptr<SelectionDisplay> display;
    std::shared_ptr<const NodeIds> nodes; ///< what the model was given; shared with the steps of the history
};

/** A set comes, goes or becomes another one. */
class SelectionSets::Edit : public SceneEdit {
    Q_DECLARE_TR_FUNCTIONS(quon::viewer::SelectionSets)

public:
    /** Without @p before the set comes, without @p after it goes. */
    Edit(SelectionSets& sets, std::optional<Record> before, std::optional<Record> after)
        : m_sets(sets)
        , m_before(std::move(before))
        , m_after(std::move(after))
    {}

    void undo() override { m_sets.apply(m_after, m_before); }
    void redo() override { m_sets.apply(m_before, m_after); }

    QString describe() const override
    {
        if (!m_before) {
            return tr("Make %1").arg(m_after->name);
        }
        if (!m_after) {
            return tr("Delete %1").arg(m_before->name);
        }
        if (m_before->name != m_after->name) {
            return tr("Rename %1").arg(m_before->name);
        }
        return tr("Change %1").arg(m_after->name);
    }

    bool isApplicable() const override { return m_sets.isApplicable(m_before, m_after); }

private:
    SelectionSets& m_sets;
    std::optional<Record> m_before;
    std::optional<Record> m_after;
};

SelectionSets::SelectionSets(SceneEditor& editor, NodeSelectionModel& selection, const osg::NodePtr& visualisations)
    : m_editor(editor)
    , m_selection(selection)
    , m_visualisations(visualisations)
{}

SelectionSets::~SelectionSets()
{
    blockSignals(true);
    clear();
}

std::vector<SelectionSets::Info> SelectionSets::getAll() const
{
    std::vector<Info> all;
    for (const auto& set : m_sets) {
        all.push_back({set->id, set->name, set->model->getSelection().size(), set->display->getLook()});
    }
    return all;
}

std::optional<SelectionSets::Info> SelectionSets::find(const Id id) const
{
    const Set* set = get(id);
    return set == nullptr ? std::optional<Info>()
                          : Info{set->id, set->name, set->model->getSelection().size(), set->display->getLook()};
}

NodeSelectionModel* SelectionSets::getModel(const Id id) const
{
    const Set* set = get(id);
    return set == nullptr ? nullptr : set->model;
}

SelectionSets::Id SelectionSets::create()
{
    const std::vector<osg::NodePtr> nodes = getSelected(m_selection);
    if (nodes.empty()) {
        return None;
    }
    SelectionLook look;
    look.colour = Palette[m_nextColour++ % std::size(Palette)];
    look.markerSize = m_defaultMarkerSize;
    const Id id = ++m_lastId;
    Record record{id, m_sets.size(), makeDefaultName(), look, std::make_shared<const NodeIds>(getIds(nodes))};
    m_editor.carryOut(std::make_unique<Edit>(*this, std::optional<Record>(), std::move(record)));
    return id;
}

QString SelectionSets::getNameProblem(const Id id, const QString& name) const
{
    const QString trimmed = name.trimmed();
    if (trimmed.isEmpty()) {
        return tr("A set needs a name.");
    }
    for (const auto& set : m_sets) {
        if (set->id != id && set->name.compare(trimmed, Qt::CaseInsensitive) == 0) {
            return tr("There is a set called %1 already.").arg(set->name);
        }
    }
    return {};
}

bool SelectionSets::rename(const Id id, const QString& name)
{
    const Set* set = get(id);
    if (set == nullptr || !getNameProblem(id, name).isEmpty()) {
        return false;
    }
    const Record before = makeRecord(*set);
    Record after = before;
    after.name = name.trimmed();
    if (after.name != before.name) {
        m_editor.carryOut(std::make_unique<Edit>(*this, before, std::move(after)));
    }
    return true;
}

void SelectionSets::recall(const Id id)
{
    if (const Set* set = get(id); set != nullptr) {
        m_editor.select(getSelected(*set->model));
    }
}

void SelectionSets::addToSelection(const Id id)
{
    if (const Set* set = get(id); set != nullptr) {
        m_editor.add(getSelected(*set->model));
    }
}

void SelectionSets::replaceBySelection(const Id id)
{
    change(id, getSelected(m_selection));
}

void SelectionSets::combine(const Id id, const Combination combination, const Id other)
{
    if (get(id) == nullptr || (other != None && get(other) == nullptr)) {
        return;
    }
    const std::vector<osg::NodePtr> first = getNodes(id);
    const std::vector<osg::NodePtr> second = getNodes(other);
    std::vector<osg::NodePtr> result;
    const auto output = std::back_inserter(result);
    switch (combination) {
    case Combination::Union:
        std::set_union(first.begin(), first.end(), second.begin(), second.end(), output);
        break;
    case Combination::Intersection:
        std::set_intersection(first.begin(), first.end(), second.begin(), second.end(), output);
        break;
    case Combination::Difference:
        std::set_difference(first.begin(), first.end(), second.begin(), second.end(), output);
        break;
    }
    change(id, result);
}

void SelectionSets::remove(const Id id)
{
    if (const Set* set = get(id); set != nullptr) {
        m_editor.carryOut(std::make_unique<Edit>(*this, makeRecord(*set), std::optional<Record>()));
    }
}

void SelectionSets::setLook(const Id id, const SelectionLook& look)
{
    const Set* set = get(id);
    if (set != nullptr && set->display->getLook() != look) {
        set->display->setLook(look);
        emit changed();
    }
}

void SelectionSets::clear()
{
    if (m_sets.empty()) {
        return;
    }
    while (!m_sets.empty()) {
        erase(m_sets.back()->id);
    }
    m_nextColour = 0;
    emit changed();
}

void SelectionSets::sceneChanged(const SceneChanges& changes)
{
    std::vector<Id> emptied;
    bool any = false;
    for (const auto& set : m_sets) {
        if (set->keeper->sceneChanged(changes)) {
            any = true;
            set->nodes = std::make_shared<const NodeIds>(getIds(set->model->getSelection()));
            if (set->nodes->empty()) {
                emptied.push_back(set->id);
            }
        }
    }
    for (const Id id : emptied) {
        erase(id);
    }
    if (any) {
        emit changed();
    }
}

SelectionSets::Set* SelectionSets::get(const Id id) const
{
    const auto found = std::find_if(m_sets.begin(), m_sets.end(), [&](const auto& set) { return set->id == id; });
    return found == m_sets.end() ? nullptr : found->get();
}

QString SelectionSets::makeDefaultName() const
{
    int number = 1;
    while (!getNameProblem(None, tr("Set %1").arg(number)).isEmpty()) {
        ++number;
    }
    return tr("Set %1").arg(number);
}

SelectionSets::Record SelectionSets::makeRecord(const Set& set) const
{
    const auto place =
        std::find_if(m_sets.begin(), m_sets.end(), [&](const auto& candidate) { return candidate.get() == &set; });
    return {set.id, static_cast<std::size_t>(place - m_sets.begin()), set.name, set.display->getLook(), set.nodes};
}

void SelectionSets::change(const Id id, const std::vector<osg::NodePtr>& nodes)
{
    const Set* set = get(id);
    if (set == nullptr ||
        std::equal(nodes.begin(), nodes.end(), set->model->getSelection().begin(), set->model->getSelection().end())) {
        return;
    }
    const Record before = makeRecord(*set);
    Record after = before;
    after.nodes = std::make_shared<const NodeIds>(getIds(nodes));
    m_editor.carryOut(std::make_unique<Edit>(*this, before, std::move(after)));
}

std::vector<osg::NodePtr> SelectionSets::getNodes(const Id id) const
{
    return getSelected(id == None ? m_selection : *get(id)->model);
}

void SelectionSets::apply(std::optional<Record>& from, const std::optional<Record>& to)
{
    if (!to) {
        if (const Set* set = get(from->id); set != nullptr) {
            // Comes back with the look that it has now.
            from->look = set->display->getLook();
            erase(from->id);
        }
    } else if (!from) {
        if (get(to->id) == nullptr && isAnyLeft(*to)) {
            insert(*to);
        }
    } else if (Set* set = get(to->id); set != nullptr) {
        if (getNameProblem(to->id, to->name).isEmpty()) {
            set->name = to->name;
        }
        if (set->nodes != to->nodes) {
            set->nodes = to->nodes;
            const std::vector<osg::NodePtr> now = getSelected(*set->model);
            std::vector<osg::NodePtr> wanted = findNodes(*to->nodes, m_editor.getScene().root);
            std::sort(wanted.begin(), wanted.end());
            std::vector<osg::NodePtr> leaving;
            std::set_difference(now.begin(), now.end(), wanted.begin(), wanted.end(), std::back_inserter(leaving));
            changeSelection(*set->model, leaving, wanted);
        }
    }
    emit changed();
}

void SelectionSets::insert(const Record& record)
{
    auto set = std::make_unique<Set>();
    set->id = record.id;
    // Sets that lost their nodes went without a step: another one may have the name by now.
    set->name = getNameProblem(record.id, record.name).isEmpty() ? record.name : makeDefaultName();
    set->model = SelectionManager::getInstance()->createSelectionModel("set:" + std::to_string(record.id));
    set->keeper = std::make_unique<SelectionKeeper>(*set->model);
    if (m_spareDisplays.empty()) {
        set->display = std::make_unique<SelectionDisplay>(m_visualisations.get(), SortKey);
    } else {
        set->display = std::move(m_spareDisplays.back());
        m_spareDisplays.pop_back();
    }
    set->display->setLook(record.look);
    set->display->setModel(set->model);
    set->nodes = record.nodes;
    set->model->setSelection(findNodes(*record.nodes, m_editor.getScene().root));
    m_editor.addFollower(set->model);
    const std::size_t place = std::min(record.place, m_sets.size());
    m_sets.insert(m_sets.begin() + static_cast<std::ptrdiff_t>(place), std::move(set));
}

void SelectionSets::erase(const Id id)
{
    const auto found = std::find_if(m_sets.begin(), m_sets.end(), [&](const auto& set) { return set->id == id; });
    const std::unique_ptr<Set> set = std::move(*found);
    m_sets.erase(found);
    m_editor.removeFollower(set->model);
    set->display->setModel(nullptr);
    m_spareDisplays.push_back(std::move(set->display));
    set->keeper.reset();
    SelectionManager::getInstance()->removeSelectionModel(set->model);
}

bool SelectionSets::isAnyLeft(const Record& record) const
{
    const NodeIds& nodes = *record.nodes;
    return nodes.empty() || std::any_of(nodes.begin(), nodes.end(), [&](const osg::UInt32 id) {
               return isWithin(findNodeById(id), m_editor.getScene().root);
           });
}

bool SelectionSets::isApplicable(const std::optional<Record>& before, const std::optional<Record>& after) const
{
    const Record& record = before ? *before : *after;
    const bool comesOrGoes = !before || !after;
    return get(record.id) != nullptr || (comesOrGoes && isAnyLeft(record));
}

} // namespace quon::viewer

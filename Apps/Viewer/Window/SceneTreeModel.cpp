// SPDX-License-Identifier: MIT
#include "Viewer/Window/SceneTreeModel.h"

#include "Viewer/Model/SceneChanges.h"
#include "Viewer/Session/SceneEditor.h"

#include <SceneUtilities/NodeUtils.h>
#include <SceneUtilities/koNodeUtils.h>

#include <OpenSG/OSGGeometry.h>

#include <QStringList>

#include <algorithm>

namespace quon::viewer {

namespace {

constexpr osg::UInt32 Hidden = 0;
const osg::BitVector StructureMask = osg::Node::ChildrenFieldMask | osg::Node::CoreFieldMask;
const osg::BitVector StateMask = osg::Node::TravMaskFieldMask | osg::Node::AttachmentsFieldMask;

bool isNamed(const osg::NodePtr& node)
{
    return !NodeUtils::getName(node).empty() && !NodeUtils::isNameGivenByProgram(node);
}

bool isGeometry(const osg::NodePtr& node)
{
    const osg::NodeCorePtr core = node->getCore();
    return core != osg::NullFC && osg::GeometryPtr::dcast(core) != osg::NullFC;
}

bool isHidden(const osg::NodePtr& node)
{
    return node->getTravMask() == Hidden;
}

void pushChildren(const osg::NodePtr& node, std::vector<osg::NodePtr>& pending)
{
    for (osg::UInt32 i = node->getNChildren(); i > 0; --i) {
        pending.push_back(node->getChild(i - 1));
    }
}

} // namespace

SceneTreeModel::SceneTreeModel(QObject* parent)
    : QAbstractItemModel(parent)
{}

void SceneTreeModel::setRoot(const osg::NodePtr& root)
{
    beginResetModel();
    m_root = root;
    findAllRows();
    applyFilter();
    endResetModel();
}

void SceneTreeModel::sceneChanged(const SceneChanges& changes)
{
    const auto& destroyed = changes.getDestroyed();
    bool structure = std::any_of(destroyed.begin(), destroyed.end(),
                                 [this](const osg::UInt32 id) { return findVisited(id) != nullptr; });
    std::vector<int> changed;
    for (auto change = changes.getChanged().begin(); change != changes.getChanged().end() && !structure; ++change) {
        const Visited* visited = findVisited(change->first);
        if (visited == nullptr) {
            continue;
        }
        if (visited->row != None) {
            const Row& row = m_allRows[static_cast<std::size_t>(visited->row)];
            structure = (change->second & StructureMask) != 0 || isNamed(row.node) != row.named;
            if ((change->second & StateMask) != 0) {
                changed.push_back(visited->row);
            }
        } else {
            // With a name, which is an attachment, it becomes a row.
            structure = (change->second & (StructureMask | osg::Node::AttachmentsFieldMask)) != 0;
        }
    }
    if (structure) {
        setRoot(m_root);
    } else {
        tellChanged(std::move(changed));
    }
}

osg::NodePtr SceneTreeModel::getNode(const QModelIndex& index) const
{
    const Row* row = find(index);
    return row == nullptr ? osg::NodePtr(osg::NullFC) : row->node;
}

osg::NodePtr SceneTreeModel::getNode(const int row) const
{
    return rows()[static_cast<std::size_t>(row)].node;
}

QModelIndex SceneTreeModel::getIndex(const osg::NodePtr& node) const
{
    return node == osg::NullFC ? QModelIndex() : findIndex(osg::getContainerId(node));
}

QModelIndex SceneTreeModel::findIndex(const osg::UInt32 id) const
{
    return makeIndex(findRow(id), Name);
}

QItemSelection SceneTreeModel::getRanges(const std::vector<int>& rows) const
{
    QItemSelection ranges;
    for (auto first = rows.begin(); first != rows.end();) {
        auto last = first;
        while (last + 1 != rows.end() && *(last + 1) == *last + 1 && getParent(*last) == getParent(*(last + 1))) {
            ++last;
        }
        ranges.append(QItemSelectionRange(makeIndex(*first, Name), makeIndex(*last, ColumnCount - 1)));
        first = last + 1;
    }
    return ranges;
}

std::vector<int> SceneTreeModel::getRows(const std::set<osg::NodePtr>& nodes) const
{
    std::vector<int> found;
    found.reserve(nodes.size());
    for (const osg::NodePtr& node : nodes) {
        const int row = node == osg::NullFC ? None : findRow(osg::getContainerId(node));
        if (row != None) {
            found.push_back(row);
        }
    }
    std::sort(found.begin(), found.end());
    return found;
}

std::vector<int> SceneTreeModel::getRows(const QItemSelection& ranges) const
{
    std::vector<int> found;
    for (const QItemSelectionRange& range : ranges) {
        if (!range.isValid()) {
            continue;
        }
        const int first = static_cast<int>(range.topLeft().internalId());
        for (int i = 0; i < range.height(); ++i) {
            found.push_back(first + i);
        }
    }
    std::sort(found.begin(), found.end());
    found.erase(std::unique(found.begin(), found.end()), found.end());
    return found;
}

void SceneTreeModel::setFilter(const QString& text)
{
    if (text == m_filter) {
        return;
    }
    beginResetModel();
    m_filter = text;
    applyFilter();
    endResetModel();
}

QModelIndex SceneTreeModel::getMatch(const int place) const
{
    return place < 0 || place >= getMatchCount() ? QModelIndex()
                                                 : makeIndex(m_matches[static_cast<std::size_t>(place)], Name);
}

int SceneTreeModel::findMatch(const QModelIndex& index) const
{
    const auto found = std::find(m_matches.begin(), m_matches.end(), static_cast<int>(index.internalId()));
    return !index.isValid() || found == m_matches.end() ? None : static_cast<int>(found - m_matches.begin());
}

QModelIndex SceneTreeModel::index(const int row, const int column, const QModelIndex& parent) const
{
    if (!hasIndex(row, column, parent)) {
        return {};
    }
    const Row* above = find(parent);
    return makeIndex((above == nullptr ? 0 : above->firstChild) + row, column);
}

QModelIndex SceneTreeModel::parent(const QModelIndex& index) const
{
    const Row* row = find(index);
    return row == nullptr ? QModelIndex() : makeIndex(row->parent, Name);
}

int SceneTreeModel::rowCount(const QModelIndex& parent) const
{
    if (!parent.isValid()) {
        return m_filter.isEmpty() ? m_topCount : m_filteredTopCount;
    }
    return parent.column() == Name ? find(parent)->childCount : 0;
}

int SceneTreeModel::columnCount(const QModelIndex&) const
{
    return ColumnCount;
}

bool SceneTreeModel::hasChildren(const QModelIndex& parent) const
{
    return rowCount(parent) > 0;
}

QVariant SceneTreeModel::data(const QModelIndex& index, const int role) const
{
    const Row* row = find(index);
    if (row == nullptr) {
        return {};
    }
    switch (role) {
    case Qt::DisplayRole:
        return index.column() == Name ? getText(row->node) : QVariant();
    case Qt::ToolTipRole:
        return index.column() == Name ? getPath(*row) : getStateText(*row, index.column());
    case Qt::AccessibleTextRole:
        return index.column() == Name ? getText(row->node) : getStateText(*row, index.column());
    case ChildCountRole:
        return m_filter.isEmpty() ? row->childCount : row->total;
    case MatchRole:
        return row->match;
    case HiddenRole:
        return isHidden(row->node);
    case HiddenAboveRole:
        return isHiddenAbove(*row);
    case LockedRole:
        return SceneEditor::isLocked(row->node);
    case LockedAboveRole:
        return isLockedAbove(*row);
    default:
        return {};
    }
}

QVariant SceneTreeModel::headerData(const int section, const Qt::Orientation orientation, const int role) const
{
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole) {
        return {};
    }
    switch (section) {
    case Name:
        return tr("Name");
    case Visibility:
        return tr("Shown");
    case Lock:
        return tr("Locked");
    default:
        return {};
    }
}

const SceneTreeModel::Row* SceneTreeModel::find(const QModelIndex& index) const
{
    return index.isValid() ? &rows()[static_cast<std::size_t>(index.internalId())] : nullptr;
}

const SceneTreeModel::Visited* SceneTreeModel::findVisited(const osg::UInt32 id) const
{
    const auto found =
        std::lower_bound(m_visited.begin(), m_visited.end(), id,
                         [](const Visited& visited, const osg::UInt32 value) { return visited.id < value; });
    return found == m_visited.end() || found->id != id ? nullptr : &*found;
}

int SceneTreeModel::findRow(const osg::UInt32 id) const
{
    const Visited* visited = findVisited(id);
    if (visited == nullptr || visited->row == None || m_filter.isEmpty()) {
        return visited == nullptr ? None : visited->row;
    }
    return m_filteredNumbers[static_cast<std::size_t>(visited->row)];
}

int SceneTreeModel::getParent(const int row) const
{
    return rows()[static_cast<std::size_t>(row)].parent;
}

QModelIndex SceneTreeModel::makeIndex(const int row, const int column) const
{
    if (row == None) {
        return {};
    }
    const int parent = getParent(row);
    const int first = parent == None ? 0 : rows()[static_cast<std::size_t>(parent)].firstChild;
    return createIndex(row - first, column, static_cast<quintptr>(row));
}

void SceneTreeModel::findAllRows()
{
    m_allRows.clear();
    m_visited.clear();
    std::vector<osg::NodePtr> pending;
    if (m_root != osg::NullFC) {
        pending.push_back(m_root);
    }
    findRowsBelow(None, false, false, pending);
    m_topCount = static_cast<int>(m_allRows.size());

    std::vector<int> depths(m_allRows.size(), 1);
    // The list grows behind the row that is being looked at.
    for (std::size_t row = 0; row < m_allRows.size() && depths[row] < MaximumDepth; ++row) {
        pushChildren(m_allRows[row].node, pending);
        findRowsBelow(static_cast<int>(row), m_allRows[row].belowName, depths[row] + 1 == MaximumDepth, pending);
        depths.resize(m_allRows.size(), depths[row] + 1);
    }
    std::sort(m_visited.begin(), m_visited.end(), [](const Visited& a, const Visited& b) { return a.id < b.id; });
}

void SceneTreeModel::findRowsBelow(const int parent, const bool belowName, const bool deepest,
                                   std::vector<osg::NodePtr>& pending)
{
    while (!pending.empty()) {
        const osg::NodePtr node = pending.back();
        pending.pop_back();
        const bool auxiliary = koNodeUtils::isAuxiliaryNode(node);
        const bool named = !auxiliary && isNamed(node);
        const bool isRow = named || (!auxiliary && !belowName && isGeometry(node));
        m_visited.push_back({osg::getContainerId(node), isRow ? static_cast<int>(m_allRows.size()) : None});
        if (isRow) {
            Row row;
            row.node = node;
            row.parent = parent;
            row.named = named;
            row.belowName = belowName || named;
            append(m_allRows, row);
        }
        if ((!isRow || deepest) && !auxiliary) {
            pushChildren(node, pending);
        }
    }
}

void SceneTreeModel::append(std::vector<Row>& rows, const Row& row)
{
    if (row.parent != None) {
        Row& parent = rows[static_cast<std::size_t>(row.parent)];
        if (parent.childCount == 0) {
            parent.firstChild = static_cast<int>(rows.size());
        }
        ++parent.childCount;
    }
    rows.push_back(row);
}

void SceneTreeModel::applyFilter()
{
    m_filteredRows.clear();
    m_filteredNumbers.clear();
    m_matches.clear();
    m_filteredTopCount = 0;
    if (m_filter.isEmpty()) {
        return;
    }
    std::vector<bool> isMatch(m_allRows.size());
    std::vector<bool> isKept(m_allRows.size());
    // Backwards: what is below comes before what is above.
    for (std::size_t row = m_allRows.size(); row-- > 0;) {
        isMatch[row] = getText(m_allRows[row].node).contains(m_filter, Qt::CaseInsensitive);
        isKept[row] = isKept[row] || isMatch[row];
        if (isKept[row] && m_allRows[row].parent != None) {
            isKept[static_cast<std::size_t>(m_allRows[row].parent)] = true;
        }
    }
    m_filteredNumbers.assign(m_allRows.size(), None);
    for (std::size_t number = 0; number < m_allRows.size(); ++number) {
        if (!isKept[number]) {
            continue;
        }
        Row row = m_allRows[number];
        row.parent = row.parent == None ? None : m_filteredNumbers[static_cast<std::size_t>(row.parent)];
        row.total = row.childCount;
        row.childCount = 0;
        row.match = isMatch[number];
        m_filteredNumbers[number] = static_cast<int>(m_filteredRows.size());
        append(m_filteredRows, row);
        m_filteredTopCount += row.parent == None ? 1 : 0;
    }
    findMatches();
}

void SceneTreeModel::findMatches()
{
    std::vector<int> pending;
    for (int row = m_filteredTopCount; row > 0; --row) {
        pending.push_back(row - 1);
    }
    while (!pending.empty()) {
        const int number = pending.back();
        pending.pop_back();
        const Row& row = m_filteredRows[static_cast<std::size_t>(number)];
        if (row.match) {
            m_matches.push_back(number);
        }
        for (int child = row.childCount; child > 0; --child) {
            pending.push_back(row.firstChild + child - 1);
        }
    }
}

void SceneTreeModel::tellChanged(std::vector<int> changed)
{
    if (!m_filter.isEmpty()) {
        std::transform(changed.begin(), changed.end(), changed.begin(),
                       [this](const int row) { return m_filteredNumbers[static_cast<std::size_t>(row)]; });
        changed.erase(std::remove(changed.begin(), changed.end(), None), changed.end());
    }
    std::sort(changed.begin(), changed.end());
    for (auto first = changed.begin(); first != changed.end();) {
        const auto end =
            std::find_if(first, changed.end(), [&](const int row) { return getParent(row) != getParent(*first); });
        emit dataChanged(makeIndex(*first, Name), makeIndex(*(end - 1), ColumnCount - 1));
        first = end;
    }
}

QString SceneTreeModel::getText(const osg::NodePtr& node) const
{
    const std::string name = NodeUtils::getName(node);
    return name.empty() ? tr("Unnamed part") : QString::fromStdString(name);
}

QString SceneTreeModel::getPath(const Row& row) const
{
    QStringList names(getText(row.node));
    for (int above = row.parent; above != None; above = getParent(above)) {
        names.prepend(getText(getNode(above)));
    }
    return names.join(QStringLiteral(" / "));
}

QString SceneTreeModel::getStateText(const Row& row, const int column) const
{
    if (column == Visibility) {
        if (isHidden(row.node)) {
            return tr("Hidden");
        }
        return isHiddenAbove(row) ? tr("Hidden with its group") : tr("Shown");
    }
    if (SceneEditor::isLocked(row.node)) {
        return tr("Locked");
    }
    return isLockedAbove(row) ? tr("Locked with its group") : tr("Not locked");
}

bool SceneTreeModel::isHiddenAbove(const Row& row) const
{
    for (osg::NodePtr node = row.node; node != m_root;) {
        node = node->getParent();
        if (node == osg::NullFC) {
            return false;
        }
        if (isHidden(node)) {
            return true;
        }
    }
    return false;
}

bool SceneTreeModel::isLockedAbove(const Row& row) const
{
    const osg::NodePtr parent = row.node->getParent();
    return parent != osg::NullFC && !koNodeUtils::isEditable(parent);
}

} // namespace quon::viewer

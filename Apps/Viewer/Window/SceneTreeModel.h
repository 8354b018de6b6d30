// SPDX-License-Identifier: MIT
#pragma once

#include <OpenSG/OSGConfig.h>

#include <OpenSG/OSGNode.h>

#include <QAbstractItemModel>
#include <QItemSelection>
#include <QString>

#include <set>
#include <vector>

namespace quon::viewer {

class SceneChanges;

/**
 * The parts and groups of a model as rows: what a user can select, nothing else.
 *
 * A row is a node that the user named, or geometry without a name that no part above claims; findPart() says the same
 * of the node under the pointer. Nodes in between without a name are left out and their rows move up; auxiliary nodes
 * are left out with all that is below them. Below the depth MaximumDepth rows become siblings: views recurse.
 *
 * All rows are found in one walk and kept in breadth-first order: the children of a row lie side by side, so that
 * parents and rows are found at once, and selected siblings are a range of numbers. Everything that a row shows is
 * asked of its node when it is needed. With a filter, only the rows whose name contains its text are there, and what is
 * above them.
 *
 * Nodes are plain handles: setRoot() with null before the scene destroys them. The model is for reading; visibility,
 * locks and selection are changed through SceneEditor.
 */
class SceneTreeModel : public QAbstractItemModel {
    Q_OBJECT

public:
    enum Column { Name, Visibility, Lock, ColumnCount };

    enum Role {
        ChildCountRole = Qt::UserRole, ///< int: rows directly below, those that the filter leaves out included
        MatchRole,                     ///< bool: the filter's text is in the name
        HiddenRole,                    ///< bool: the node itself is hidden
        HiddenAboveRole,               ///< bool: something above is hidden
        LockedRole,                    ///< bool: the node itself is locked
        LockedAboveRole,               ///< bool: something above is locked
    };

    static constexpr int MaximumDepth = 200;

    explicit SceneTreeModel(QObject* parent = nullptr);

    /** Shows the rows from @p root down; null shows none. Resets the model. */
    void setRoot(const osg::NodePtr& root);

    /**
     * Follows the scene: resets the model when rows may have come or gone, tells the views which rows look different
     * otherwise. One range of rows for each parent, from the first to the last that changed.
     */
    void sceneChanged(const SceneChanges& changes);

    /** Returns the node of a row; null for an invalid index. */
    osg::NodePtr getNode(const QModelIndex& index) const;

    /** Returns the row of a node, in the first column; invalid for a node that has none, or none under the filter. */
    QModelIndex getIndex(const osg::NodePtr& node) const;

    /** Returns the row of the node with a container id; invalid where getIndex() would be. */
    QModelIndex findIndex(osg::UInt32 id) const;

    /**
     * Returns whole rows as ranges: neighbours are one range, however many they are.
     *
     * @param rows numbers as getRows() returns them
     */
    QItemSelection getRanges(const std::vector<int>& rows) const;

    /** Returns the numbers of the rows that these nodes have, ascending; nodes without a row are left out. */
    std::vector<int> getRows(const std::set<osg::NodePtr>& nodes) const;

    /** Returns the numbers of the rows in these ranges, ascending, each once. */
    std::vector<int> getRows(const QItemSelection& ranges) const;

    /** Returns the node of a row by its number. */
    osg::NodePtr getNode(int row) const;

    /** Leaves only the rows whose names contain @p text, whatever the case, and what is above them. Resets the model.
     */
    void setFilter(const QString& text);
    const QString& getFilter() const { return m_filter; }

    /** Returns how many rows the filter's text is in; none without a filter. */
    int getMatchCount() const { return static_cast<int>(m_matches.size()); }

    /** Returns a match by its place from top to bottom, counted from 0; invalid outside. */
    QModelIndex getMatch(int place) const;

    /** Returns the place of a row among the matches, -1 when it is none. */
    int findMatch(const QModelIndex& index) const;

    /** Returns how many rows there are without a filter. */
    int getTotalCount() const { return static_cast<int>(m_allRows.size()); }

    QModelIndex index(int row, int column, const QModelIndex& parent = QModelIndex()) const override;
    QModelIndex parent(const QModelIndex& index) const override;
    int rowCount(const QModelIndex& parent = QModelIndex()) const override;
    int columnCount(const QModelIndex& parent = QModelIndex()) const override;
    bool hasChildren(const QModelIndex& parent = QModelIndex()) const override;
    QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role = Qt::DisplayRole) const override;

private:
    static constexpr int None = -1;

    struct Row {
        osg::NodePtr node;
        int parent = None;
        int firstChild = 0;
        int childCount = 0;
        int total = 0;          ///< with a filter: children with those that it leaves out
        bool match = false;     ///< with a filter: its text is in the name
        bool named = false;     ///< by the user
        bool belowName = false; ///< the node or something above has a name
    };

    /** A node that the walk met. */
    struct Visited {
        osg::UInt32 id; ///< container id
        int row;        ///< its number among all rows, None for a node that is no row
    };

    const std::vector<Row>& rows() const { return m_filter.isEmpty() ? m_allRows : m_filteredRows; }
    const Row* find(const QModelIndex& index) const;
    const Visited* findVisited(osg::UInt32 id) const;
    int findRow(osg::UInt32 id) const;
    int getParent(int row) const;
    QModelIndex makeIndex(int row, int column) const;

    void findAllRows();
    void findRowsBelow(int parent, bool belowName, bool deepest, std::vector<osg::NodePtr>& pending);
    static void append(std::vector<Row>& rows, const Row& row);
    void applyFilter();
    void findMatches();
    void tellChanged(std::vector<int> changed);

    QString getText(const osg::NodePtr& node) const;
    QString getPath(const Row& row) const;
    QString getStateText(const Row& row, int column) const;
    bool isHiddenAbove(const Row& row) const;
    bool isLockedAbove(const Row& row) const;

    osg::NodePtr m_root;
    std::vector<Row> m_allRows;     ///< breadth first: siblings lie side by side
    std::vector<Visited> m_visited; ///< by id
    int m_topCount = 0;             ///< rows without a parent
    QString m_filter;
    std::vector<Row> m_filteredRows;    ///< with a filter: the rows that it leaves, in the same order
    std::vector<int> m_filteredNumbers; ///< with a filter: where each of all rows is among these, or None
    std::vector<int> m_matches;         ///< with a filter: numbers of the matching rows, from top to bottom
    int m_filteredTopCount = 0;         ///< with a filter: rows without a parent
};

} // namespace quon::viewer

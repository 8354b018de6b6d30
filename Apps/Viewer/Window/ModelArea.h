// SPDX-License-Identifier: MIT
#pragma once

#include <QStringList>
#include <QWidget>

class QMimeData;

namespace quon::viewer {

class LoadProgress;
class MessageBar;
class ModelOpener;
class RecentFiles;
class StartPage;

/**
 * The middle of the window: the view, or what stands in its place without a model, with messages above it and the
 * progress of a load below it. Takes files that are dropped on it.
 */
class ModelArea : public QWidget {
    Q_OBJECT

public:
    /**
     * @param view becomes a child
     * @param opener its loads are shown; borrowed, must outlive the area
     * @param files offered without a model; borrowed, must outlive the area
     */
    ModelArea(QWidget* view, ModelOpener& opener, RecentFiles& files, QWidget* parent = nullptr);

    /** Whether there is a model, and thus something in the view. */
    void setModelShown(bool shown);

    MessageBar& getMessages() { return *m_messages; }
    StartPage& getStartPage() { return *m_startPage; }

    /**
     * Takes care of the drops on @p window, whatever widget they fall on that does not want them itself.
     *
     * @param window borrowed, must outlive the area
     */
    void takeDropsOf(QWidget* window);

signals:
    /** One file was dropped that is on this machine. */
    void fileDropped(const QString& file);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void takeDrop(const QMimeData& dropped);

    QWidget* m_view;
    MessageBar* m_messages;
    StartPage* m_startPage;
    LoadProgress* m_progress;
};

} // namespace quon::viewer

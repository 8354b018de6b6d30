// SPDX-License-Identifier: MIT
#include "Viewer/Window/ModelArea.h"

#include "Viewer/Window/LoadProgress.h"
#include "Viewer/Window/MessageBar.h"
#include "Viewer/Window/ModelOpener.h"
#include "Viewer/Window/StartPage.h"

#include <QDragEnterEvent>
#include <QDropEvent>
#include <QGridLayout>
#include <QMimeData>
#include <QUrl>

namespace quon::viewer {

ModelArea::ModelArea(QWidget* view, ModelOpener& opener, RecentFiles& files, QWidget* parent)
    : QWidget(parent)
    , m_view(view)
    , m_messages(new MessageBar(this))
    , m_startPage(new StartPage(files, this))
    , m_progress(new LoadProgress(this))
{
    auto* layout = new QGridLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(m_messages, 0, 0);
    // The page covers the view, which keeps its size and its drawing surface all the time.
    layout->addWidget(m_view, 1, 0);
    layout->addWidget(m_startPage, 1, 0);
    layout->addWidget(m_progress, 2, 0);
    layout->setRowStretch(1, 1);
    m_startPage->raise();

    connect(&opener, &ModelOpener::started, m_messages, &QWidget::hide);
    connect(&opener, &ModelOpener::progressed, m_progress, &LoadProgress::showProgress);
    connect(&opener, &ModelOpener::ended, m_progress, &QWidget::hide);
    connect(m_progress, &LoadProgress::cancelRequested, &opener, &ModelOpener::cancel);
}

void ModelArea::setModelShown(const bool shown)
{
    const bool hadFocus = m_startPage->isAncestorOf(focusWidget()) || m_startPage->hasFocus();
    m_startPage->setVisible(!shown);
    if (shown && hadFocus) {
        m_view->setFocus();
    }
}

void ModelArea::takeDropsOf(QWidget* window)
{
    window->setAcceptDrops(true);
    window->installEventFilter(this);
}

bool ModelArea::eventFilter(QObject* watched, QEvent* event)
{
    switch (event->type()) {
    case QEvent::DragEnter: {
        auto* drag = static_cast<QDragEnterEvent*>(event);
        // What cannot be opened is taken all the same: the drop says why.
        const bool any = drag->mimeData()->hasUrls() || drag->mimeData()->hasText();
        drag->setAccepted(any);
        if (any) {
            drag->setDropAction(Qt::CopyAction);
            m_startPage->setDropExpected(true);
        }
        return true;
    }
    case QEvent::DragMove:
        event->accept();
        return true;
    case QEvent::DragLeave:
        m_startPage->setDropExpected(false);
        return true;
    case QEvent::Drop: {
        auto* dropped = static_cast<QDropEvent*>(event);
        dropped->setDropAction(Qt::CopyAction);
        dropped->accept();
        m_startPage->setDropExpected(false);
        takeDrop(*dropped->mimeData());
        return true;
    }
    default:
        return QWidget::eventFilter(watched, event);
    }
}

void ModelArea::takeDrop(const QMimeData& dropped)
{
    const QList<QUrl> urls = dropped.urls();
    if (urls.size() > 1) {
        m_messages->showMessage(MessageBar::Kind::Warning, tr("Drop one model at a time."));
    } else if (urls.size() == 1 && urls.front().isLocalFile()) {
        emit fileDropped(urls.front().toLocalFile());
    } else if (urls.size() == 1) {
        m_messages->showMessage(MessageBar::Kind::Warning,
                                tr("%1 is not a file on this computer.").arg(urls.front().toDisplayString()));
    } else {
        m_messages->showMessage(MessageBar::Kind::Warning, tr("What was dropped is not a file."));
    }
}

} // namespace quon::viewer

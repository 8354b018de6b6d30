// SPDX-License-Identifier: MIT
#include "Viewer/Window/MainWindow.h"

#include "Viewer/Model/AssemblyGenerator.h"
#include "Viewer/Model/ModelLoader.h"
#include "Viewer/Model/ViewerError.h"
#include "Viewer/Session/ViewerSession.h"
#include "Viewer/Window/Viewport.h"

#include <Interaction/InteractionEvent.h>
#include <Interaction/InteractionManager.h>
#include <Shortcut/koShortcut.h>

#include <QAction>
#include <QApplication>
#include <QDockWidget>
#include <QFile>
#include <QFileDialog>
#include <QFileInfo>
#include <QLabel>
#include <QMessageBox>
#include <QStatusBar>
#include <QTextBrowser>
#include <QToolBar>
#include <QToolButton>

namespace quon::viewer {

MainWindow::MainWindow(ViewerSession& session, QWidget* parent)
    : QMainWindow(parent)
    , m_session(session)
    , m_viewport(new Viewport(session, Viewport::Target::Window, this))
    , m_keyHelp(new QTextBrowser(this))
    , m_hovered(new QLabel(this))
    , m_summary(new QLabel(this))
{
    setWindowTitle(QStringLiteral("koviewer"));
    setCentralWidget(m_viewport);

    auto* dock = new QDockWidget(QStringLiteral("Keys and mouse"), this);
    dock->setWidget(m_keyHelp);
    addDockWidget(Qt::RightDockWidgetArea, dock);
    m_keyHelp->setFocusPolicy(Qt::NoFocus);
    m_keyHelp->setFrameShape(QFrame::NoFrame);
    m_keyHelp->setMinimumWidth(340);
    fillKeyHelp();

    addActions();
    statusBar()->addWidget(m_hovered, 1);
    statusBar()->addPermanentWidget(m_summary);
    m_session.setHovered([this](const std::string& name) { m_hovered->setText(QString::fromStdString(name)); });
    resize(1240, 800);
    m_viewport->setFocus();
}

MainWindow::~MainWindow()
{
    m_session.setHovered({});
    // Before its neighbours: it still tells the session about the end of everything pending.
    delete m_viewport;
}

void MainWindow::open(const std::string& file)
{
    const QString name = QFileInfo(QFile::decodeName(file.c_str())).fileName();
    const ModelLoader loader([&](const float share) {
        statusBar()->showMessage(
            share < 0 ? QStringLiteral("Loading %1 ...").arg(name)
                      : QStringLiteral("Loading %1 ... %2 %").arg(name).arg(static_cast<int>(share * 100)));
        // Input has to wait: there is no model that it could be meant for.
        QApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
    });
    QApplication::setOverrideCursor(Qt::WaitCursor);
    try {
        const osg::RefPtr<osg::NodePtr> model = loader.load(file);
        m_session.setModel(model.get());
    } catch (const ViewerError&) {
        QApplication::restoreOverrideCursor();
        statusBar()->clearMessage();
        throw;
    }
    QApplication::restoreOverrideCursor();
    statusBar()->clearMessage();
    setWindowTitle(QStringLiteral("%1 - koviewer").arg(name));
    m_summary->setText(QStringLiteral("%1 parts").arg(m_session.countParts()));
}

void MainWindow::showAssembly(const int partCount)
{
    const osg::RefPtr<osg::NodePtr> assembly = AssemblyGenerator::generate(partCount);
    m_session.setModel(assembly.get());
    setWindowTitle(QStringLiteral("Assembly - koviewer"));
    m_summary->setText(QStringLiteral("%1 parts").arg(m_session.countParts()));
}

void MainWindow::addActions()
{
    auto* bar = addToolBar(QStringLiteral("Viewer"));
    bar->setMovable(false);
    bar->setToolButtonStyle(Qt::ToolButtonTextOnly);
    const auto add = [&](const QString& text, const QString& tip, const auto& slot) {
        QAction* action = bar->addAction(text);
        action->setToolTip(tip);
        connect(action, &QAction::triggered, this, slot);
        return action;
    };
    add(QStringLiteral("Open..."), QStringLiteral("Open a model (Ctrl+O)"), [this] {
        askAndOpen();
    })->setShortcut(QKeySequence::Open);
    bar->addSeparator();
    add(QStringLiteral("Fit"), QStringLiteral("Fit the model into the view"), [this] { sendCommand("view:fit"); });
    add(QStringLiteral("Front"), QStringLiteral("Look from the front"), [this] { sendCommand("view:front"); });
    add(QStringLiteral("Right"), QStringLiteral("Look from the right"), [this] { sendCommand("view:right"); });
    add(QStringLiteral("Top"), QStringLiteral("Look from above"), [this] { sendCommand("view:top"); });
    add(QStringLiteral("Iso"), QStringLiteral("Look from above at an angle"), [this] { sendCommand("view:iso"); });
    // The keys belong to the viewport, also after a click up here.
    for (QToolButton* button : bar->findChildren<QToolButton*>()) {
        button->setFocusPolicy(Qt::NoFocus);
    }
}

void MainWindow::askAndOpen()
{
    const QString file = QFileDialog::getOpenFileName(this, QStringLiteral("Open a model"));
    if (file.isEmpty()) {
        return;
    }
    try {
        open(QFile::encodeName(file).toStdString());
    } catch (const ViewerError& error) {
        QMessageBox::warning(this, QStringLiteral("koviewer"), QString::fromStdString(error.what()));
    }
}

void MainWindow::fillKeyHelp()
{
    QString rows;
    for (const koShortcut::Entry& entry : koShortcut::getEntries()) {
        rows += QStringLiteral("<tr><td style='white-space:nowrap'><b>%1</b>&nbsp;&nbsp;</td><td>%2</td></tr>")
                    .arg(koShortcut::toText(entry).toHtmlEscaped(), entry.description.toHtmlEscaped());
    }
    // The wheel has no binding and thus no entry.
    rows += QStringLiteral("<tr><td><b>Wheel</b></td><td>Zoom the view</td></tr>");
    m_keyHelp->setHtml(QStringLiteral("<table cellpadding='3'>%1</table>").arg(rows));
}

void MainWindow::sendCommand(const char* category)
{
    m_session.getInteractionManager().triggerEvent(interaction::InteractionEvent(category, "start"));
    m_session.processSceneChanges();
}

} // namespace quon::viewer

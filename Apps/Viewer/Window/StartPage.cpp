// SPDX-License-Identifier: MIT
#include "Viewer/Window/StartPage.h"

#include "Viewer/Window/Icons.h"
#include "Viewer/Window/RecentFiles.h"

#include <QDir>
#include <QEvent>
#include <QFileInfo>
#include <QHBoxLayout>
#include <QKeySequence>
#include <QLabel>
#include <QPainter>
#include <QPushButton>
#include <QVBoxLayout>

namespace quon::viewer {

namespace {

constexpr int LargestFrameWidth = 460;
constexpr int Margin = 28;
constexpr int FrameShare = 1000;
constexpr int PictureSize = 56;
constexpr int LinkPadding = 8;

// More would push the buttons out of a small window.
constexpr int LargestNumberOfLinks = 5;

} // namespace

StartPage::StartPage(RecentFiles& files, QWidget* parent)
    : QWidget(parent)
    , m_files(files)
    , m_frame(new QWidget(this))
    , m_picture(new QLabel(this))
    , m_title(new QLabel(this))
    , m_hint(new QLabel(this))
    , m_open(new QPushButton(this))
    , m_assembly(new QPushButton(this))
    , m_recentTitle(new QLabel(this))
    , m_recent(new QWidget(this))
    , m_recentLayout(new QVBoxLayout(m_recent))
{
    setObjectName(QStringLiteral("startPage"));
    setAutoFillBackground(true);
    setBackgroundRole(QPalette::Base);
    // It does not keep a window large that has to be small.
    setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Ignored);

    m_frame->setMaximumWidth(LargestFrameWidth);
    auto* column = new QVBoxLayout(m_frame);
    column->setContentsMargins(Margin, Margin, Margin, Margin);
    column->setSpacing(10);
    for (QLabel* label : {m_picture, m_title, m_hint}) {
        label->setAlignment(Qt::AlignHCenter);
        label->setWordWrap(label != m_picture);
        column->addWidget(label);
    }
    QFont large = font();
    large.setPointSizeF(large.pointSizeF() * 1.6);
    m_title->setFont(large);

    auto* buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(m_open);
    buttons->addWidget(m_assembly);
    buttons->addStretch();
    column->addSpacing(8);
    column->addLayout(buttons);
    column->addSpacing(12);
    column->addWidget(m_recentTitle);
    column->addWidget(m_recent);
    m_recentLayout->setContentsMargins(0, 0, 0, 0);
    m_recentLayout->setSpacing(2);
    QFont bold = font();
    bold.setBold(true);
    m_recentTitle->setFont(bold);

    auto* rows = new QVBoxLayout(this);
    rows->addStretch();
    auto* middle = new QHBoxLayout;
    middle->addStretch(1);
    // As wide as there is room for; what is left over goes to both sides.
    middle->addWidget(m_frame, FrameShare);
    middle->addStretch(1);
    rows->addLayout(middle);
    rows->addStretch();

    m_open->setObjectName(QStringLiteral("startOpen"));
    m_open->setDefault(true);
    m_open->setAutoDefault(true);
    m_assembly->setObjectName(QStringLiteral("startAssembly"));
    m_assembly->setAutoDefault(true);
    connect(m_open, &QPushButton::clicked, this, &StartPage::openRequested);
    connect(m_assembly, &QPushButton::clicked, this, &StartPage::assemblyRequested);
    connect(&m_files, &RecentFiles::changed, this, &StartPage::fillRecentFiles);
    setFocusProxy(m_open);
    retranslate();
}

void StartPage::setDropExpected(const bool expected)
{
    m_dropExpected = expected;
    update();
}

void StartPage::changeEvent(QEvent* event)
{
    QWidget::changeEvent(event);
    if (event->type() == QEvent::LanguageChange) {
        retranslate();
    }
}

void StartPage::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QColor colour = palette().color(m_dropExpected ? QPalette::Highlight : QPalette::Mid);
    QPen pen(colour, m_dropExpected ? 3 : 1.5);
    pen.setStyle(Qt::DashLine);
    painter.setPen(pen);
    if (m_dropExpected) {
        QColor inside = colour;
        inside.setAlpha(30);
        painter.setBrush(inside);
    }
    painter.drawRoundedRect(QRectF(m_frame->geometry()).adjusted(2, 2, -2, -2), 12, 12);
}

void StartPage::retranslate()
{
    m_picture->setPixmap(getIcon("part").pixmap(PictureSize));
    m_title->setText(tr("Drop a model here"));
    m_hint->setText(tr("glTF, OBJ, STL, PLY, Collada, FBX and many other formats"));
    m_open->setText(tr("&Open..."));
    m_open->setToolTip(
        tr("Choose a file (%1)").arg(QKeySequence(QKeySequence::Open).toString(QKeySequence::NativeText)));
    m_assembly->setText(tr("&Generate an assembly"));
    m_assembly->setToolTip(tr("Show a made-up assembly of 2,000 parts"));
    m_recentTitle->setText(tr("Recent files"));
    fillRecentFiles();
}

void StartPage::fillRecentFiles()
{
    for (QPushButton* button : m_recent->findChildren<QPushButton*>()) {
        // Not at once: it may be the one that was clicked.
        button->hide();
        m_recentLayout->removeWidget(button);
        button->setParent(nullptr);
        button->deleteLater();
    }
    for (const QString& file : m_files.getFiles().mid(0, LargestNumberOfLinks)) {
        const QString name = QFileInfo(file).fileName();
        auto* link = new QPushButton(QString(name).replace(QLatin1Char('&'), QLatin1String("&&")), m_recent);
        link->setFlat(true);
        link->setAutoDefault(true);
        link->setCursor(Qt::PointingHandCursor);
        link->setToolTip(QDir::toNativeSeparators(file));
        link->setStyleSheet(QStringLiteral("text-align: left; padding: 0px 8px;"));
        // The style sheet forgets about the letters below the line.
        link->setMinimumHeight(link->fontMetrics().height() + LinkPadding);
        QPalette colours = link->palette();
        colours.setColor(QPalette::ButtonText, colours.color(QPalette::Link));
        link->setPalette(colours);
        connect(link, &QPushButton::clicked, this, [this, file] { emit fileChosen(file); });
        m_recentLayout->addWidget(link);
        // Before it is shown with its layout it is no stop of the Tab key.
        link->show();
    }
    const bool any = !m_files.getFiles().isEmpty();
    m_recentTitle->setVisible(any);
    m_recent->setVisible(any);
}

} // namespace quon::viewer

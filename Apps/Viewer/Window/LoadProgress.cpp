// SPDX-License-Identifier: MIT
#include "Viewer/Window/LoadProgress.h"

#include <QEvent>
#include <QHBoxLayout>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>

namespace quon::viewer {

namespace {

constexpr int Steps = 1000;

} // namespace

LoadProgress::LoadProgress(QWidget* parent)
    : QFrame(parent)
    , m_text(new QLabel(this))
    , m_bar(new QProgressBar(this))
    , m_cancel(new QPushButton(this))
{
    setObjectName(QStringLiteral("loadProgress"));
    setFrameShape(QFrame::NoFrame);
    setBackgroundRole(QPalette::Window);
    setAutoFillBackground(true);
    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(12, 6, 12, 6);
    layout->setSpacing(12);
    layout->addWidget(m_text, 1);
    layout->addWidget(m_bar, 1);
    layout->addWidget(m_cancel);
    m_text->setTextFormat(Qt::PlainText);
    // A long name must not widen the window.
    m_text->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    m_bar->setTextVisible(false);
    m_bar->setMaximumHeight(12);
    connect(m_cancel, &QPushButton::clicked, this, &LoadProgress::cancelRequested);
    retranslate();
    hide();
}

void LoadProgress::showProgress(const QString& text, const double share)
{
    m_text->setText(text);
    m_text->setToolTip(text);
    m_bar->setRange(0, share < 0 ? 0 : Steps);
    m_bar->setValue(share < 0 ? 0 : static_cast<int>(share * Steps));
    show();
}

void LoadProgress::changeEvent(QEvent* event)
{
    QFrame::changeEvent(event);
    if (event->type() == QEvent::LanguageChange) {
        retranslate();
    }
}

void LoadProgress::retranslate()
{
    m_cancel->setText(tr("Cancel"));
    m_cancel->setToolTip(tr("Stop loading and keep what is shown"));
    m_bar->setAccessibleName(tr("Progress of loading"));
}

} // namespace quon::viewer

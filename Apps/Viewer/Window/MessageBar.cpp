// SPDX-License-Identifier: MIT
#include "Viewer/Window/MessageBar.h"

#include <QEvent>
#include <QGridLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QStyle>
#include <QToolButton>

namespace quon::viewer {

namespace {

constexpr int IconSize = 18;

// A share of the second colour in the first.
QColor mix(const QColor& first, const QColor& second, const double share)
{
    const auto channel = [&](const int a, const int b) { return static_cast<int>(a + (b - a) * share); };
    return {channel(first.red(), second.red()), channel(first.green(), second.green()),
            channel(first.blue(), second.blue())};
}

} // namespace

MessageBar::MessageBar(QWidget* parent)
    : QFrame(parent)
    , m_icon(new QLabel(this))
    , m_text(new QLabel(this))
    , m_detailsButton(new QToolButton(this))
    , m_closeButton(new QToolButton(this))
    , m_details(new QLabel(this))
{
    setObjectName(QStringLiteral("messageBar"));
    setAutoFillBackground(true);
    auto* layout = new QGridLayout(this);
    layout->setContentsMargins(12, 6, 6, 6);
    layout->setHorizontalSpacing(10);
    layout->addWidget(m_icon, 0, 0);
    layout->addWidget(m_text, 0, 1);
    layout->addWidget(m_detailsButton, 0, 2);
    layout->addWidget(m_closeButton, 0, 3);
    layout->addWidget(m_details, 1, 1, 1, 3);
    layout->setColumnStretch(1, 1);
    for (QLabel* label : {m_text, m_details}) {
        label->setTextFormat(Qt::PlainText);
        label->setWordWrap(true);
        label->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    }
    m_details->setObjectName(QStringLiteral("messageLines"));
    m_detailsButton->setObjectName(QStringLiteral("messageDetails"));
    m_detailsButton->setAutoRaise(true);
    m_detailsButton->setCheckable(true);
    connect(m_detailsButton, &QToolButton::toggled, this, &MessageBar::setDetailsShown);
    m_closeButton->setObjectName(QStringLiteral("messageClose"));
    m_closeButton->setAutoRaise(true);
    m_closeButton->setIcon(style()->standardIcon(QStyle::SP_TitleBarCloseButton));
    connect(m_closeButton, &QToolButton::clicked, this, &QWidget::hide);
    for (QToolButton* button : {m_detailsButton, m_closeButton}) {
        button->setFocusPolicy(Qt::TabFocus);
    }
    retranslate();
    hide();
}

void MessageBar::showMessage(const Kind kind, const QString& text, const QStringList& details)
{
    m_kind = kind;
    m_text->setText(text);
    m_details->setText(details.join(QLatin1Char('\n')));
    m_detailsButton->setChecked(false);
    m_detailsButton->setVisible(!details.isEmpty());
    m_details->hide();
    setColours();
    const QStyle::StandardPixmap picture = kind == Kind::Error     ? QStyle::SP_MessageBoxCritical
                                           : kind == Kind::Warning ? QStyle::SP_MessageBoxWarning
                                                                   : QStyle::SP_MessageBoxInformation;
    m_icon->setPixmap(style()->standardIcon(picture).pixmap(IconSize));
    setAccessibleName(text);
    show();
}

QString MessageBar::getText() const
{
    return m_text->text();
}

void MessageBar::changeEvent(QEvent* event)
{
    QFrame::changeEvent(event);
    if (event->type() == QEvent::LanguageChange) {
        retranslate();
    }
}

void MessageBar::keyPressEvent(QKeyEvent* event)
{
    if (event->key() == Qt::Key_Escape) {
        hide();
        return;
    }
    QFrame::keyPressEvent(event);
}

void MessageBar::retranslate()
{
    m_closeButton->setToolTip(tr("Close this message"));
    m_closeButton->setAccessibleName(tr("Close this message"));
    setDetailsShown(m_detailsButton->isChecked());
}

void MessageBar::setDetailsShown(const bool shown)
{
    m_details->setVisible(shown);
    m_detailsButton->setText(shown ? tr("Hide details") : tr("Show details"));
}

void MessageBar::setColours()
{
    const QColor tint = m_kind == Kind::Error     ? QColor(208, 48, 48)
                        : m_kind == Kind::Warning ? QColor(230, 160, 20)
                                                  : QColor(60, 130, 200);
    // Light or dark, the words stay as readable as they are elsewhere.
    QPalette colours = parentWidget() != nullptr ? parentWidget()->palette() : palette();
    colours.setColor(QPalette::Window, mix(colours.color(QPalette::Window), tint, 0.18));
    setPalette(colours);
}

} // namespace quon::viewer

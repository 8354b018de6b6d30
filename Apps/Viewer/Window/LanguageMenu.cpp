// SPDX-License-Identifier: MIT
#include "Viewer/Window/LanguageMenu.h"

#include "Viewer/Session/Settings.h"
#include "Viewer/Window/Languages.h"

#include <QActionGroup>
#include <QEvent>

namespace quon::viewer {

LanguageMenu::LanguageMenu(Languages& languages, Settings* settings, QWidget* parent)
    : QMenu(parent)
    , m_languages(languages)
    , m_settings(settings)
    , m_group(new QActionGroup(this))
{
    setObjectName(QStringLiteral("language"));
    for (const Languages::Language& language : Languages::getAll()) {
        addLanguage(language.code, QString::fromUtf8(language.name));
    }
    addSeparator();
    addLanguage(std::string(), QString());
    m_system = actions().back();
    connect(&m_languages, &Languages::selected, this, &LanguageMenu::updateActions);
    retranslate();
    updateActions();
}

void LanguageMenu::changeEvent(QEvent* event)
{
    QMenu::changeEvent(event);
    if (event->type() == QEvent::LanguageChange) {
        retranslate();
    }
}

void LanguageMenu::addLanguage(const std::string& code, const QString& name)
{
    QAction* action = addAction(name);
    action->setCheckable(true);
    action->setData(QString::fromStdString(code));
    action->setActionGroup(m_group);
    connect(action, &QAction::triggered, this, [this, action] { choose(action->data().toString()); });
}

void LanguageMenu::choose(const QString& code)
{
    m_languages.select(code.toStdString());
    if (m_settings != nullptr) {
        m_settings->setLanguage(code);
    }
}

void LanguageMenu::retranslate()
{
    setTitle(tr("Language"));
    m_system->setText(tr("System default"));
}

void LanguageMenu::updateActions()
{
    for (QAction* action : m_group->actions()) {
        action->setChecked(action->data().toString().toStdString() == m_languages.getSelected());
    }
}

} // namespace quon::viewer

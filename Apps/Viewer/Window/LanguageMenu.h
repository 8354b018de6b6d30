// SPDX-License-Identifier: MIT
#pragma once

#include <QMenu>

#include <string>

class QActionGroup;

namespace quon::viewer {

class Languages;
class Settings;

/** A menu with the languages of the viewer, by their own names, and that of the system. */
class LanguageMenu : public QMenu {
    Q_OBJECT

public:
    /**
     * @param languages borrowed, must outlive the menu
     * @param settings where the user's choice is kept; borrowed, null for nowhere
     */
    LanguageMenu(Languages& languages, Settings* settings, QWidget* parent = nullptr);

protected:
    void changeEvent(QEvent* event) override;

private:
    void addLanguage(const std::string& code, const QString& name);
    void choose(const QString& code);
    void retranslate();
    void updateActions();

    Languages& m_languages;
    Settings* m_settings;
    QActionGroup* m_group;
    QAction* m_system = nullptr;
};

} // namespace quon::viewer

// SPDX-License-Identifier: MIT
#pragma once

#include <QLocale>
#include <QObject>
#include <QString>
#include <QTranslator>

#include <string>
#include <vector>

namespace quon::viewer {

class ViewerSession;

/**
 * The languages of the viewer, one of which is installed in the application at a time.
 *
 * A change takes effect at once: widgets hear of it with QEvent::LanguageChange, and the session's texts, those in the
 * shortcut registry included, are asked for anew. Numbers are written as the language writes them.
 */
class Languages : public QObject {
    Q_OBJECT

public:
    struct Language {
        const char* code; ///< for example "de"
        const char* name; ///< in the language itself
    };

    /** Installs nothing. English without plural forms, as it stands in the sources, is what there is until then. */
    explicit Languages(QObject* parent = nullptr);

    /** Takes the translations out of the application. */
    ~Languages() override;

    Languages(const Languages&) = delete;
    Languages& operator=(const Languages&) = delete;

    /** The languages that the viewer speaks. */
    static const std::vector<Language>& getAll();

    /** Returns whether the viewer speaks the language of this code. */
    static bool isKnown(const std::string& code);

    /**
     * Sets whose bindings leave the shortcut registry before a change and come back after it.
     *
     * The registry's entries are found by their translated heading, see InputBindings::remove(). Borrowed; null for
     * none.
     */
    void setSession(ViewerSession* session) { m_session = session; }

    /**
     * Speaks another language.
     *
     * @param code an unknown one and the empty one stand for that of the system, and that is English where the viewer
     *        does not speak it
     */
    void select(const std::string& code);

    /** What select() was called with, empty for the language of the system. */
    const std::string& getSelected() const { return m_selected; }

    /** Returns the code of the language that is spoken; empty before select(). */
    const std::string& getSpoken() const { return m_spoken; }

signals:
    /** Another language was selected. */
    void selected();

private:
    void install();
    void uninstall();

    ViewerSession* m_session = nullptr;
    std::string m_selected;
    std::string m_spoken;
    const QLocale m_systemLocale;
    QTranslator m_ofQt; ///< texts of the buttons in dialogs
    QTranslator m_ofViewer;
};

} // namespace quon::viewer

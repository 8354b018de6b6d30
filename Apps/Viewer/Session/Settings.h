// SPDX-License-Identifier: MIT
#pragma once

#include "Viewer/Session/InputBindings.h"

#include <QByteArray>
#include <QObject>
#include <QString>
#include <QStringList>
#include <QVariant>

#include <map>
#include <memory>
#include <string>

class QSettings;

namespace quon::viewer {

/**
 * What the viewer remembers from one start to the next, in a file of its own.
 *
 * Users edit such files and disks fill up: what is not what it should be is ignored, value by value, and told with
 * describeProblems(). A file that is none (a folder, a device) or that cannot be read is left alone; nothing is kept
 * then. Every change is written at once.
 */
class Settings : public QObject {
    Q_OBJECT

public:
    /** @param file an INI file; one that is missing is made with the first change */
    explicit Settings(const QString& file, QObject* parent = nullptr);
    ~Settings() override;

    Settings(const Settings&) = delete;
    Settings& operator=(const Settings&) = delete;

    /** Returns where the settings of the user belong, by the names of organisation and application. */
    static QString getUserFile();

    /** Returns what other classes keep their values in; null when nothing is kept. The settings own it. */
    QSettings* getStore() const { return m_store.get(); }

    /** Returns what is wrong in one line that names the file; empty when nothing is. */
    QString describeProblems() const;

    /** Adds a value to those that are ignored: it is none that anybody can use. */
    void ignore(const QString& key);

    /** Position and size of the window, empty when there is none. */
    QByteArray getWindowGeometry() const;
    void setWindowGeometry(const QByteArray& geometry);

    /** Panels and tool bars of the window, empty when there is nothing. */
    QByteArray getWindowState() const;
    void setWindowState(const QByteArray& state);

    /** Returns the keys that the user changed, as InputBindings has them. */
    std::map<std::string, KeyBinding> getKeys() const;
    void setKeys(const std::map<std::string, KeyBinding>& keys);

    /** Returns the code of the language that the user wants, for example "de"; empty for that of the system. */
    QString getLanguage() const;
    void setLanguage(const QString& code);

    /** Returns whether the command that switches something is on; @p standard when nothing is known. */
    bool getSwitch(const std::string& command, bool standard) const;
    void setSwitch(const std::string& command, bool isOn);

    /** The keys of the values, for ignore(). */
    static const QString WindowGeometryKey;
    static const QString WindowStateKey;

signals:
    /** describeProblems() has another answer. */
    void problemsChanged();

private:
    void open();
    void check();
    bool isValid(const QString& key) const;
    QVariant get(const QString& key) const;
    void set(const QString& key, const QVariant& value);
    void write();

    QString m_file;
    std::unique_ptr<QSettings> m_store;
    QStringList m_ignored;
    bool m_isUnreadable = false;
    bool m_isDamaged = false;
    bool m_isUnwritable = false;
};

} // namespace quon::viewer

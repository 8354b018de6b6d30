// SPDX-License-Identifier: MIT
#include "Viewer/Session/Settings.h"

#include "Viewer/Session/Commands.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QRegularExpression>
#include <QSettings>

#include <algorithm>
#include <cmath>

namespace quon::viewer {

namespace {

const QString LanguageKey = QStringLiteral("language");
const QString KeyPrefix = QStringLiteral("keys/");
const QString SwitchPrefix = QStringLiteral("switches/");

// More than anybody's settings: it is not read.
constexpr qint64 LargestFile = 1 << 20;

bool isBytes(const QString&, const QVariant& value)
{
    return value.userType() == QMetaType::QByteArray && !value.toByteArray().isEmpty();
}

bool isText(const QString&, const QVariant& value)
{
    return value.userType() == QMetaType::QString;
}

bool isTexts(const QString&, const QVariant& value)
{
    return value.userType() == QMetaType::QStringList || value.userType() == QMetaType::QString;
}

bool isLanguage(const QString& key, const QVariant& value)
{
    static const QRegularExpression code(QStringLiteral("^([a-z]{2}(_[A-Z]{2})?)?$"));
    return isText(key, value) && code.match(value.toString()).hasMatch();
}

bool isKeyOfCommand(const QString& key, const QVariant& value)
{
    bool isKey = false;
    KeyBinding::fromPortableText(value.toString(), isKey);
    return isKey && isText(key, value) && Command::find(key.mid(KeyPrefix.size()).toStdString()) != nullptr;
}

bool isSwitchOfCommand(const QString& key, const QVariant& value)
{
    const QString text = value.toString();
    return (text == QLatin1String("true") || text == QLatin1String("false")) &&
           Command::find(key.mid(SwitchPrefix.size()).toStdString()) != nullptr;
}

bool isLengthUnit(const QString&, const QVariant& value)
{
    return QStringList({QStringLiteral("m"), QStringLiteral("mm"), QStringLiteral("in")}).contains(value.toString());
}

bool isUpAxis(const QString&, const QVariant& value)
{
    return QStringList({QStringLiteral("x"), QStringLiteral("y"), QStringLiteral("z")}).contains(value.toString());
}

bool isLength(const QString&, const QVariant& value)
{
    bool isNumber = false;
    const double length = value.toDouble(&isNumber);
    return isNumber && std::isfinite(length) && length >= 0;
}

/** What a value must be. A star stands for what is in between two slashes, or behind the last one. */
struct Rule {
    const char* key;
    bool (*isValid)(const QString& key, const QVariant& value);
};

constexpr Rule Rules[] = {
    {"window/geometry", isBytes},      {"window/state", isBytes},
    {"language", isLanguage},          {"keys/*", isKeyOfCommand},
    {"switches/*", isSwitchOfCommand}, {"lengthUnit", isLengthUnit},
    {"formats/*/upAxis", isUpAxis},    {"formats/*/metresPerUnit", isLength},
    {"recentFiles", isTexts},          {"folder", isText},
};

bool isMeant(const Rule& rule, const QString& key)
{
    const QStringList wanted = QString::fromLatin1(rule.key).split(QLatin1Char('/'));
    const QStringList given = key.split(QLatin1Char('/'));
    return wanted.size() == given.size() &&
           std::equal(wanted.begin(), wanted.end(), given.begin(), [](const QString& want, const QString& have) {
               return want == QLatin1String("*") || want == have;
           });
}

} // namespace

const QString Settings::WindowGeometryKey = QStringLiteral("window/geometry");
const QString Settings::WindowStateKey = QStringLiteral("window/state");

Settings::Settings(const QString& file, QObject* parent)
    : QObject(parent)
    , m_file(file)
{
    open();
    if (m_store != nullptr) {
        check();
    }
}

Settings::~Settings() = default;

QString Settings::getUserFile()
{
    return QSettings(QSettings::IniFormat, QSettings::UserScope, QCoreApplication::organizationName(),
                     QCoreApplication::applicationName())
        .fileName();
}

QString Settings::describeProblems() const
{
    const QString file = QDir::toNativeSeparators(m_file);
    if (m_isUnreadable) {
        return tr("%1 cannot be read; settings are not kept").arg(file);
    }
    if (m_isUnwritable) {
        return tr("%1 cannot be written; settings are not kept").arg(file);
    }
    if (!m_ignored.isEmpty()) {
        return tr("%1: ignored %2").arg(file, m_ignored.join(QStringLiteral(", ")));
    }
    return m_isDamaged ? tr("%1 is damaged; what cannot be read is ignored").arg(file) : QString();
}

void Settings::ignore(const QString& key)
{
    if (!m_ignored.contains(key)) {
        m_ignored << key;
        emit problemsChanged();
    }
}

QByteArray Settings::getWindowGeometry() const
{
    return get(WindowGeometryKey).toByteArray();
}

void Settings::setWindowGeometry(const QByteArray& geometry)
{
    set(WindowGeometryKey, geometry);
}

QByteArray Settings::getWindowState() const
{
    return get(WindowStateKey).toByteArray();
}

void Settings::setWindowState(const QByteArray& state)
{
    set(WindowStateKey, state);
}

std::map<std::string, KeyBinding> Settings::getKeys() const
{
    std::map<std::string, KeyBinding> keys;
    for (const Command& command : Command::getAll()) {
        const QVariant text = get(KeyPrefix + QLatin1String(command.name));
        if (text.isValid()) {
            bool isKey = false;
            keys[command.name] = KeyBinding::fromPortableText(text.toString(), isKey);
        }
    }
    return keys;
}

void Settings::setKeys(const std::map<std::string, KeyBinding>& keys)
{
    if (m_store == nullptr) {
        return;
    }
    for (const Command& command : Command::getAll()) {
        const QString key = KeyPrefix + QLatin1String(command.name);
        const auto changed = keys.find(command.name);
        if (changed == keys.end()) {
            m_store->remove(key);
        } else {
            m_store->setValue(key, changed->second.toPortableText());
        }
    }
    write();
}

QString Settings::getLanguage() const
{
    return get(LanguageKey).toString();
}

void Settings::setLanguage(const QString& code)
{
    set(LanguageKey, code);
}

bool Settings::getSwitch(const std::string& command, const bool standard) const
{
    const QVariant value = get(SwitchPrefix + QString::fromStdString(command));
    return value.isValid() ? value.toBool() : standard;
}

void Settings::setSwitch(const std::string& command, const bool isOn)
{
    set(SwitchPrefix + QString::fromStdString(command), isOn);
}

void Settings::open()
{
    const QFileInfo file(m_file);
    // Looked at before it is opened: to read from a pipe would be to wait for ever.
    m_isUnreadable =
        file.exists() ? !file.isFile() || !file.isReadable() || file.size() > LargestFile : file.isSymLink();
    if (m_isUnreadable) {
        return;
    }
    auto store = std::make_unique<QSettings>(m_file, QSettings::IniFormat);
    if (store->status() == QSettings::AccessError) {
        m_isUnreadable = true;
        return;
    }
    m_store = std::move(store);
}

void Settings::check()
{
    for (const QString& key : m_store->allKeys()) {
        if (!isValid(key)) {
            m_ignored << key;
        }
    }
    // Only now: lines are looked at when their keys are asked for.
    m_isDamaged = m_store->status() == QSettings::FormatError;
}

bool Settings::isValid(const QString& key) const
{
    const QVariant value = m_store->value(key);
    // What nobody here knows belongs to somebody else, or to another version.
    return std::none_of(std::begin(Rules), std::end(Rules),
                        [&](const Rule& rule) { return isMeant(rule, key) && !rule.isValid(key, value); });
}

QVariant Settings::get(const QString& key) const
{
    return m_store != nullptr && m_store->contains(key) && isValid(key) ? m_store->value(key) : QVariant();
}

void Settings::set(const QString& key, const QVariant& value)
{
    if (m_store != nullptr && get(key) != value) {
        m_store->setValue(key, value);
        write();
    }
}

void Settings::write()
{
    m_store->sync();
    const bool isUnwritable = m_store->status() == QSettings::AccessError;
    if (isUnwritable != m_isUnwritable) {
        m_isUnwritable = isUnwritable;
        emit problemsChanged();
    }
}

} // namespace quon::viewer

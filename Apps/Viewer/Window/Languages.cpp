// SPDX-License-Identifier: MIT
#include "Viewer/Window/Languages.h"

#include "Viewer/Session/QtVersions.h"
#include "Viewer/Session/ViewerSession.h"

#include <QCoreApplication>

#include <algorithm>

// Resources of a static library are linked only when somebody asks for them, outside any namespace.
static void initResources()
{
    Q_INIT_RESOURCE(translations);
}

namespace quon::viewer {

namespace {

const char* const Fallback = "en";

} // namespace

Languages::Languages(QObject* parent)
    : QObject(parent)
    , m_systemLocale(QLocale::system())
{
    initResources();
}

Languages::~Languages()
{
    if (!m_spoken.empty()) {
        uninstall();
        QLocale::setDefault(m_systemLocale);
    }
}

const std::vector<Languages::Language>& Languages::getAll()
{
    static const std::vector<Language> languages{{"en", "English"}, {"de", "Deutsch"}};
    return languages;
}

bool Languages::isKnown(const std::string& code)
{
    const std::vector<Language>& all = getAll();
    return std::any_of(all.begin(), all.end(), [&](const Language& language) { return code == language.code; });
}

void Languages::select(const std::string& code)
{
    const std::string system = m_systemLocale.name().section(QLatin1Char('_'), 0, 0).toStdString();
    m_selected = isKnown(code) ? code : std::string();
    const std::string spoken = !m_selected.empty() ? m_selected : isKnown(system) ? system : std::string(Fallback);
    if (spoken != m_spoken) {
        if (m_session != nullptr) {
            m_session->getBindings().remove();
        }
        uninstall();
        m_spoken = spoken;
        install();
        if (m_session != nullptr) {
            m_session->retranslate();
        }
    }
    emit selected();
}

void Languages::install()
{
    const QLocale locale(QString::fromStdString(m_spoken));
    // Of the same language it knows more: the country's way with numbers.
    QLocale::setDefault(m_systemLocale.language() == locale.language() ? m_systemLocale : locale);
    // Without Qt's own texts the buttons of its dialogs stay English; nothing else suffers.
    if (m_ofQt.load(QStringLiteral("qtbase_%1").arg(QString::fromStdString(m_spoken)),
                    QtVersions::getTranslationsFolder())) {
        QCoreApplication::installTranslator(&m_ofQt);
    }
    if (m_ofViewer.load(
            QStringLiteral(":/koviewer/Translations/koviewer_%1.qm").arg(QString::fromStdString(m_spoken)))) {
        QCoreApplication::installTranslator(&m_ofViewer);
    }
}

void Languages::uninstall()
{
    QCoreApplication::removeTranslator(&m_ofViewer);
    QCoreApplication::removeTranslator(&m_ofQt);
}

} // namespace quon::viewer

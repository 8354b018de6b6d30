// SPDX-License-Identifier: MIT
#pragma once

#include <OpenSG/OSGBaseTypes.h>

namespace osg {

enum LogLevel { LOG_LOG = 0, LOG_FATAL, LOG_WARNING, LOG_NOTICE, LOG_INFO, LOG_DEBUG };

/**
 * Writes messages to standard error, one line each, up to a level.
 *
 * Warnings and worse are written unless the level is changed.
 */
class OSG_BASE_DLLMAPPING Log {
public:
    void setLogLevel(LogLevel level) { m_level = level; }
    LogLevel getLogLevel() const { return m_level; }

    /// Whether messages of @p level are written.
    bool checkLevel(LogLevel level) const { return level <= m_level; }

    /// Writes as printf() does; the format brings its own end of line.
    void doLog(const Char8* format, ...) __attribute__((format(printf, 2, 3)));

private:
    LogLevel m_level = LOG_WARNING;
};

/// The log of the process.
OSG_BASE_DLLMAPPING Log& osgLog();

} // namespace osg

// The argument is a whole argument list in brackets of its own: FWARNING(("%u nodes\n", count)).
#define OSG_LOG_AT(LEVEL, ARGUMENTS)                                                                                   \
    do {                                                                                                               \
        if (::osg::osgLog().checkLevel(LEVEL)) {                                                                       \
            ::osg::osgLog().doLog ARGUMENTS;                                                                           \
        }                                                                                                              \
    } while (false)

#define FFATAL(ARGUMENTS) OSG_LOG_AT(::osg::LOG_FATAL, ARGUMENTS)
#define FWARNING(ARGUMENTS) OSG_LOG_AT(::osg::LOG_WARNING, ARGUMENTS)
#define FNOTICE(ARGUMENTS) OSG_LOG_AT(::osg::LOG_NOTICE, ARGUMENTS)
#define FINFO(ARGUMENTS) OSG_LOG_AT(::osg::LOG_INFO, ARGUMENTS)

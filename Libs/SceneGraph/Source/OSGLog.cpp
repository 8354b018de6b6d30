// SPDX-License-Identifier: MIT
#include <OpenSG/OSGLog.h>

#include <cstdarg>
#include <cstdio>

namespace osg {

void Log::doLog(const Char8* format, ...)
{
    std::va_list arguments;
    va_start(arguments, format);
    std::vfprintf(stderr, format, arguments);
    va_end(arguments);
}

Log& osgLog()
{
    static Log log;
    return log;
}

} // namespace osg

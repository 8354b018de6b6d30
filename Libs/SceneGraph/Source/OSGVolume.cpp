// SPDX-License-Identifier: MIT
#include <OpenSG/OSGVolume.h>

namespace osg {

Volume::~Volume() = default;

Pnt3f Volume::getMin() const
{
    Pnt3f minimum;
    Pnt3f maximum;
    getBounds(minimum, maximum);
    return minimum;
}

Pnt3f Volume::getMax() const
{
    Pnt3f minimum;
    Pnt3f maximum;
    getBounds(minimum, maximum);
    return maximum;
}

} // namespace osg

// SPDX-License-Identifier: MIT
#pragma once

// The handle together with the class it leads to.
#include <OpenSG/OSGNode.h>

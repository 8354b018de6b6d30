// SPDX-License-Identifier: MIT
#pragma once

// Brings all properties of geometries.
#include <OpenSG/OSGGeoPropColors.h>
#include <OpenSG/OSGGeoPropIndices.h>
#include <OpenSG/OSGGeoPropNormals.h>
#include <OpenSG/OSGGeoPropPLengths.h>
#include <OpenSG/OSGGeoPropPTypes.h>
#include <OpenSG/OSGGeoPropPositions.h>
#include <OpenSG/OSGGeoPropPtrs.h>
#include <OpenSG/OSGGeoPropTexCoords.h>

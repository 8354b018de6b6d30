// SPDX-License-Identifier: MIT
#pragma once

/**
 * @file
 * Namespace, version and export macros of the scene graph. Included by every other header of it.
 */

/// The version that this scene graph is source compatible with.
#define OSG_VERSION 0x010801
#define OSG_MAJOR_VERSION 1
#define OSG_MINOR_VERSION 8
#define OSG_RELEASE_VERSION 1
#define OSG_VERSION_STRING "1.8.1 (embedded)"

/// Code may spell the namespace in either case; no other identifier can be called OSG because of this.
#define OSG osg

#define OSG_BEGIN_NAMESPACE namespace osg {
#define OSG_END_NAMESPACE }

// clang-format off
#define OSG_USING_NAMESPACE namespace osg {} using namespace osg;
// clang-format on

// Type information and statics have to be unique in a process although the libraries around hide their symbols.
#if defined(__GNUC__)
#define OSG_BASE_DLLMAPPING __attribute__((visibility("default")))
#else
#define OSG_BASE_DLLMAPPING
#endif
#define OSG_SYSTEM_DLLMAPPING OSG_BASE_DLLMAPPING

namespace osg {} // namespace osg

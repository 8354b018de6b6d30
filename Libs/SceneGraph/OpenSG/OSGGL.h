// SPDX-License-Identifier: MIT
#pragma once

// Brings GLenum, which is a field type as well, and the enumerators; nothing here calls OpenGL.
#include <GL/gl.h>

// SPDX-License-Identifier: MIT
#pragma once

namespace quon::viewer {

/** The axis of a model's coordinates that points up. The viewer's own world has y up. */
enum class UpAxis { X, Y, Z };

} // namespace quon::viewer

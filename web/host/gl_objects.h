#pragma once

namespace web {

/// Deletes all GL objects of the canvas' context. The library forgets its names without deleting them, as those of a
/// lost context; where a script has only ordered the loss, or another host follows, the context lives on.
void dropGlObjects();

}  // namespace web

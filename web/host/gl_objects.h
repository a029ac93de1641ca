#pragma once

namespace web {

/// Deletes all GL objects of the canvas's context. The library does not delete its objects when it restarts, because it
/// assumes that the context is lost. On the page, the context still exists if a gesture script only simulates its loss,
/// or if the page restarts the effect.
void dropGlObjects();

}  // namespace web

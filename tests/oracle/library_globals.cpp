#include "effect/effect_state.h"

// The library's CPU half stands here without the rest of the library, which defines these.

namespace velmora {

constinit bool inkEnabled = false;
constinit SharedTouch gTouch;
constinit EffectState gEffectState;

}  // namespace velmora

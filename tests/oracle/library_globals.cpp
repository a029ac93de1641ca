#include "effect/effect_state.h"

// Globals for programs that link only the CPU half of the library.

namespace velmora {

constinit bool inkEnabled = false;
constinit SharedTouch gTouch;
constinit EffectState gEffectState;

}  // namespace velmora

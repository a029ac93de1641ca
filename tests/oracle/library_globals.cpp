#include "effect/effect_state.h"

// Defines the library's globals for programs that link only its CPU half.

namespace velmora {

constinit bool inkEnabled = false;
constinit SharedTouch gTouch;
constinit EffectState gEffectState;

}  // namespace velmora

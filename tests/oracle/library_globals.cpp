#include "effect/effect_state.h"

// Defines the library's global variables for programs that link only the library's code for the CPU.

namespace velmora {

constinit bool inkEnabled = false;
constinit SharedTouch gTouch;
constinit EffectState gEffectState;

}  // namespace velmora

#include "effect/effect_state.h"

// The CPU half's globals, which the library defines in the order of their destruction.

namespace velmora {

bool gInkEnabled = false;
TouchVariables gTouch;
EffectState gEffectState;

}  // namespace velmora

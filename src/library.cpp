#include "effect/effect_state.h"
#include "kit/animation_manager.h"

// The library's globals, in the order in which they are made: destruction at unload runs it backwards.

namespace velmora {

constinit bool inkEnabled = false;
constinit SharedTouch gTouch;
constinit EffectState gEffectState;
AnimationManager gAnimationManager;

}  // namespace velmora

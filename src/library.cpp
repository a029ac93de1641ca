#include "effect/effect_state.h"
#include "kit/animation_manager.h"

// The library's globals in the order of their construction. The unload destroys them in reverse order.

namespace velmora {

constinit bool inkEnabled = false;
constinit SharedTouch gTouch;
constinit EffectState gEffectState;
AnimationManager gAnimationManager;

}  // namespace velmora

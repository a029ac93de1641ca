#include "effect/effect_state.h"
#include "kit/animation_manager.h"

// The library's globals in the order of their construction. They are destroyed in reverse order when the library is
// unloaded.

namespace velmora {

constinit bool inkEnabled = false;
constinit SharedTouch gTouch;
constinit EffectState gEffectState;
AnimationManager gAnimationManager;

}  // namespace velmora

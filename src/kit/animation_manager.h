#pragma once

#include <vector>

#include "kit/oru.h"

namespace velmora {

/// Computes the animation time from the kit's timer. Call it on the kit's render thread.
///
/// The interface has three slots in its virtual table. A virtual destructor would add two.
// NOLINTNEXTLINE(cppcoreguidelines-virtual-class-destructor)
class AnimationManager final : public oru::IAnimationManager {
public:
    /// Queries the animations in list order. Returns the first result that is not 0, else 0.
    int anyAnimationResult() override;

    /// Calls `notify` of every animation in list order.
    void notifyAnimations() override;

    /// Sets the clock, then calls `update` of every animation in list order.
    void update() override;

private:
    /// Animations that are updated. The kit adds them by writing into this object's memory. Not owned.
    std::vector<oru::IAnimation*> animations;
};

/// Defined in library.cpp: constructed after the effect state and destroyed before it.
extern AnimationManager gAnimationManager;

}  // namespace velmora

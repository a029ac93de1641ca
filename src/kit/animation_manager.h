#pragma once

#include <vector>

#include "kit/oru.h"

namespace velmora {

/// Turns the kit's timer into the current animation time. On the kit's render thread.
// The interface's slots end with the third: a virtual destructor would add two.
// NOLINTNEXTLINE(cppcoreguidelines-virtual-class-destructor)
class AnimationManager final : public oru::IAnimationManager {
public:
    /// First result other than 0 of the animations' queries, asked in list order; the rest are not
    /// asked. Else 0.
    int anyAnimationResult() override;

    /// Calls `notify` of every animation in list order.
    void notifyAnimations() override;

    /// Sets the clock, then calls `update` of every animation in list order.
    void update() override;

private:
    /// Not owned, and filled by the kit alone, through the memory of this object.
    std::vector<oru::IAnimation*> animations;
};

/// Defined beside the effect state, because it is constructed after it and destroyed before it.
extern AnimationManager gAnimationManager;

}  // namespace velmora

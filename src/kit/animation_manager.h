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
    /// Calls `query` of the animations in list order until one returns a value other than 0. Returns that value, else
    /// 0.
    int anyAnimationResult() override;

    /// Calls `notify` of every animation in list order.
    void notifyAnimations() override;

    /// Sets the clock, then calls `update` of every animation in list order.
    void update() override;

private:
    /// Animations to update; not owned. The kit adds animations by writing into this object's memory.
    std::vector<oru::IAnimation*> animations;
};

/// The library's animation manager. library.cpp defines it after the effect state, so it is destroyed before that
/// state.
extern AnimationManager gAnimationManager;

}  // namespace velmora

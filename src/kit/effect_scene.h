#pragma once

#include "kit/oru.h"

namespace velmora {

/// The effect as a scene of the kit: what every scene is, with nothing to do of its own. The native
/// methods draw the effect without it.
class EffectScene final : public oru::Scene {
public:
    EffectScene();

    void operation5() override {}
    void operation6() override {}
    int operation7() override { return 0; }
};

}  // namespace velmora

/// A new scene for the current GL context, or for none. The caller owns it and deletes it through
/// its virtual destructor. On the kit's render thread.
extern "C" __attribute__((visibility("default"))) velmora::EffectScene* createScene();

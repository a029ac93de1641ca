#pragma once

#include "kit/oru.h"
#include "velmora/create_scene.h"

namespace velmora {

/// The effect as a scene of the kit. The class adds nothing to its base class, because the native methods draw the
/// effect.
class EffectScene final : public oru::Scene {
public:
    EffectScene();

    void operation5() override {}
    void operation6() override {}
    int operation7() override { return 0; }
};

}  // namespace velmora

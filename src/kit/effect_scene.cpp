#include "kit/effect_scene.h"

#include "kit/animation_manager.h"

namespace velmora {

EffectScene::EffectScene() : Scene(gAnimationManager) {}

}  // namespace velmora

velmora::EffectScene* createScene() {
    return new velmora::EffectScene;
}

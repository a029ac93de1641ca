#pragma once

namespace velmora {

/// The effect as a scene of the rendering kit. The kit knows it as the kit's own `oru::Scene`, which
/// lies at the same address: by the slots of its virtual operations and by its fields.
class EffectScene;

}  // namespace velmora

/// A new scene for the current GL context, or for none. Seeds the C library's `rand`. The caller owns
/// the scene and deletes it through its virtual destructor. On the kit's render thread.
extern "C" __attribute__((visibility("default"))) velmora::EffectScene* createScene();

// SPDX-License-Identifier: MIT
// Copyright (c) 2026 the Velmora authors
#pragma once

/// @file
/// The function with which the rendering kit creates a scene of the effect.

namespace velmora {

/// The effect as a scene of the rendering kit. The kit treats the object as its own class `oru::Scene`: it calls
/// virtual functions by slot and accesses fields at fixed offsets. docs/kit.md lists the slots and offsets.
class EffectScene;

}  // namespace velmora

/// Creates a scene of the effect and seeds the C library's `rand`. The scene remembers the current GL context, if there
/// is one.
/// Thread: the kit's render thread.
/// @return the new scene; the caller owns it and deletes it through its virtual destructor
extern "C" __attribute__((visibility("default"))) velmora::EffectScene* createScene();

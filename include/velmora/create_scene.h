// SPDX-License-Identifier: MIT
// Copyright (c) 2026 the Velmora authors
#pragma once

/// @file
/// The interface to the rendering kit.

namespace velmora {

/// The effect as a scene of the rendering kit. The kit accesses it as its own `oru::Scene`, through virtual slots and
/// fields at fixed offsets. docs/kit.md lists both.
class EffectScene;

}  // namespace velmora

/// Creates a scene for the current GL context, or for no context. Seeds the C library's `rand`.
/// Thread: the kit's render thread.
/// @return the new scene; the caller owns it and deletes it through its virtual destructor
extern "C" __attribute__((visibility("default"))) velmora::EffectScene* createScene();

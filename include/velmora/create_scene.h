// SPDX-License-Identifier: MIT
// Copyright (c) 2026 the Velmora authors
#pragma once

/// @file
/// The interface to the rendering kit.

namespace velmora {

/// The effect as a scene of the rendering kit. The kit uses it as a scene of its own class `oru::Scene`, through
/// virtual functions by slot and fields at fixed offsets. docs/kit.md lists these slots and offsets.
class EffectScene;

}  // namespace velmora

/// Creates a scene for the current GL context; a context need not be current. Seeds the C library's `rand`.
/// Thread: the kit's render thread.
/// @return the new scene; the caller owns it and deletes it through its virtual destructor
extern "C" __attribute__((visibility("default"))) velmora::EffectScene* createScene();

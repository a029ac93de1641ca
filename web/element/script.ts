// The element for a script tag. The global variable `velmora` has the exports of the package.

// The text of the module comes first in the bundle, because gzip compresses it worse between two scripts.
import "velmora-element.wasm";
import { CanvasWater, createWater, presetNames, VelmoraWater } from "./element";

Object.assign(globalThis, { velmora: { CanvasWater, createWater, presetNames, VelmoraWater } });

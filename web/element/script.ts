// Entry point of the file that a page loads with a script tag. The global variable `velmora` contains the exports of
// the package.

import "velmora-element.wasm"; // first, as in index.ts
import { CanvasWater, createWater, presetNames, VelmoraWater } from "./element";

Object.assign(globalThis, { velmora: { CanvasWater, createWater, presetNames, VelmoraWater } });

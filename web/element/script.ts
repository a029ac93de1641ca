// Entry point of the file that a page loads with a script tag. The global variable `velmora` contains the exports of
// the package.

// Imported first, so that the base64 text of the WebAssembly module is at the start of the bundle. gzip compresses the
// bundle worse if the base64 text is between two scripts.
import "velmora-element.wasm";
import { CanvasWater, createWater, presetNames, VelmoraWater } from "./element";

Object.assign(globalThis, { velmora: { CanvasWater, createWater, presetNames, VelmoraWater } });

// Main module of the npm package. It exports the class of the custom element and the functions for water on a canvas.
// Importing this module does not define the custom element.

// Imported first, so that the base64 text of the WebAssembly module is at the start of each bundle. gzip compresses a
// bundle worse if the base64 text is between two scripts.
import "velmora-element.wasm";

export type { Ink, Settings } from "../../build/web/settings";
export type { BackgroundSource } from "./background";
export type { Point, StrokeOptions } from "./finger_queue";
export type { PointerMode } from "./live_water";
export type { DropOptions } from "./water";
export { CanvasWater, createWater, type WaterOptions } from "./create_water";
export { presetNames } from "./setting_values";
export { VelmoraWater, type VelmoraWaterAttributes } from "./velmora_water";

// The WebAssembly module of gestures.cpp as base64 text. The build puts it into a file of its own, which the browser
// loads only when the page plays or records a gesture.

import program from "velmora-gestures.wasm";

export { program };

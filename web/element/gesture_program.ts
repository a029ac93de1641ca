// The WebAssembly module of gestures.cpp, in a file that is loaded only when a gesture is played or recorded.

import program from "velmora-gestures.wasm";

export { program };

// Types of the files that the bundler adds to the scripts: base64 of the compressed WebAssembly modules.

declare module "velmora-element.wasm" {
    const program: string;
    export default program;
}
declare module "velmora-gestures.wasm" {
    const program: string;
    export default program;
}

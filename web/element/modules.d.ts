// Types of the modules that the bundler adds to the scripts: the compressed WebAssembly modules in base64, the minified
// style sheet, and the shipped presets by name.

declare module "velmora-element.wasm" {
    const program: string;
    export default program;
}
declare module "velmora-gestures.wasm" {
    const program: string;
    export default program;
}
declare module "*.css" {
    const css: string;
    export default css;
}
declare module "velmora-presets" {
    const presets: Record<string, Partial<import("../../build/web/settings").Settings>>;
    export default presets;
}

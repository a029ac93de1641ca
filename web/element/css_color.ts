// Converts CSS colours.

import type { Ink } from "../../build/web/settings";

/** Returns red, green and blue of any CSS colour, 0 to 1, or undefined. The alpha channel is ignored. */
export function inkOf(color: string): Ink | undefined {
    if (!CSS.supports("color", color)) {
        return undefined;
    }
    const canvas = document.createElement("canvas");
    canvas.width = canvas.height = 1;
    const context = canvas.getContext("2d", { willReadFrequently: true });
    if (!context) {
        return undefined;
    }
    context.fillStyle = color;
    context.fillRect(0, 0, 1, 1);
    const [red = 0, green = 0, blue = 0] = context.getImageData(0, 0, 1, 1).data;
    return [red / 255, green / 255, blue / 255];
}

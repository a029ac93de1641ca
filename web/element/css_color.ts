// Converts CSS colours.

import type { Ink } from "../../build/web/settings";

/** Improbable ink colour, in the format in which a canvas returns `fillStyle`. */
const unlikely = "#010203";

/** Returns red, green and blue of any CSS colour, 0 to 1, or undefined. The alpha channel is ignored. */
export function inkOf(color: string): Ink | undefined {
    const canvas = document.createElement("canvas");
    canvas.width = canvas.height = 1;
    const context = canvas.getContext("2d", { willReadFrequently: true });
    if (!context) {
        return undefined;
    }
    // A canvas ignores values that are not colours. It also ignores var(), although CSS.supports accepts var().
    context.fillStyle = unlikely;
    context.fillStyle = color;
    if (context.fillStyle === unlikely) {
        return undefined;
    }
    context.fillRect(0, 0, 1, 1);
    const [red = 0, green = 0, blue = 0] = context.getImageData(0, 0, 1, 1).data;
    return [red / 255, green / 255, blue / 255];
}

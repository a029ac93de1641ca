// What is shown over the picture of how it came about: the flow as strokes, the ink's density in false colours.

import type { EffectProbe, VelocityField } from "./effect_probe";

const mostAcross = 30;
/** Shorter flows are noise of the encoding. */
const leastSpeed = 0.25;
const mostLength = 2.5; // spacings

export interface Overlays {
    velocity: boolean;
    density: boolean;
}

export function drawOverlays(overlays: Overlays, probe: EffectProbe, canvas: HTMLCanvasElement): void {
    const shown = overlays.velocity || overlays.density;
    canvas.hidden = !shown;
    if (!shown) {
        return;
    }
    const context = canvas.getContext("2d") as CanvasRenderingContext2D;
    canvas.width = Math.round(canvas.clientWidth * devicePixelRatio);
    canvas.height = Math.round(canvas.clientHeight * devicePixelRatio);
    if (overlays.density) {
        drawDensity(context, probe);
    }
    if (overlays.velocity) {
        drawVelocity(context, probe.velocity);
    }
}

/** A decade of the density runs through the colours: what the eye takes for no ink shows blue. */
const densityColors = Array.from({ length: 256 }, (_, at) => {
    const level = at / 255;
    const part = (value: number) => Math.round(255 * Math.min(Math.max(value, 0), 1));
    return [
        part(3 * level - 1),
        part(2 - Math.abs(4 * level - 2)),
        part(1.6 - 2.5 * level),
        part(0.25 + 0.65 * Math.min(1, 4 * level)),
    ] as const;
});

function drawDensity(context: CanvasRenderingContext2D, probe: EffectProbe): void {
    const ink = probe.inkBytes();
    if (!ink) {
        return;
    }
    const image = new ImageData(ink.width, ink.height);
    for (let at = 0; at < ink.bytes.length; at += 4) {
        const density = (ink.bytes[at] as number) + (ink.bytes[at + 1] as number) / 255;
        const level = Math.min(Math.round((255 * Math.log2(1 + 4 * density)) / 8), 255);
        image.data.set(densityColors[level] as readonly number[], at);
    }
    const texture = new OffscreenCanvas(ink.width, ink.height);
    (texture.getContext("2d") as OffscreenCanvasRenderingContext2D).putImageData(image, 0, 0);
    context.save();
    context.scale(1, -1);
    context.drawImage(texture, 0, -context.canvas.height, context.canvas.width, context.canvas.height);
    context.restore();
}

/** A component, split over a high and a low byte as 255 * high + low with an offset of 127. */
function decode(bytes: Uint8Array, at: number): number {
    return (bytes[at] as number) + (bytes[at + 1] as number) / 255 - 127;
}

function drawVelocity(context: CanvasRenderingContext2D, field: VelocityField): void {
    const { columns, rows, bytes } = field;
    const stride = Math.ceil(Math.max(columns, (rows * 9) / 16) / mostAcross);
    const cellWidth = context.canvas.width / columns;
    const cellHeight = context.canvas.height / rows;
    context.lineWidth = 2 * devicePixelRatio;
    for (let row = stride >> 1; row < rows; row += stride) {
        for (let column = stride >> 1; column < columns; column += stride) {
            const cell = 4 * (row * columns + column);
            const x = (column + 0.5) * cellWidth;
            const y = context.canvas.height - (row + 0.5) * cellHeight;
            drawFlow(context, x, y, decode(bytes, cell), decode(bytes, cell + 2), stride * cellWidth);
        }
    }
}

function drawFlow(
    context: CanvasRenderingContext2D,
    x: number,
    y: number,
    right: number,
    up: number,
    spacing: number,
): void {
    const speed = Math.hypot(right, up);
    if (speed < leastSpeed) {
        return;
    }
    const length = (spacing * Math.min(0.3 + 0.12 * speed, mostLength)) / speed;
    const heat = Math.min(speed / 20, 1);
    const strength = Math.min(0.2 + speed / 6, 0.9); // little where little moves
    context.strokeStyle = `rgb(255 ${Math.round(255 * (1 - 0.8 * heat))} 51 / ${strength})`;
    context.beginPath();
    context.moveTo(x, y);
    context.lineTo(x + right * length, y - up * length);
    context.stroke();
    context.fillStyle = `rgb(26 26 26 / ${strength})`;
    const dot = 1.5 * devicePixelRatio;
    context.fillRect(x - dot, y - dot, 2 * dot, 2 * dot);
}

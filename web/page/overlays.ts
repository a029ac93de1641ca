// Overlays over the effect: the velocity field as lines, the ink density in false colours.

import type { Effect, FlowLine } from "./effect";
import { EffectProbe, type VelocityField } from "./effect_probe";

export class Overlays {
    velocity = false;
    density = false;
    readonly probe: EffectProbe;

    constructor(
        private readonly effect: Effect,
        private readonly canvas: HTMLCanvasElement,
    ) {
        this.probe = new EffectProbe(effect);
    }

    /** True if the last frame has the data of the overlays. */
    get isCurrent(): boolean {
        return this.probe.hasFrame || !this.isShown;
    }

    /** Draws a frame of the effect. Observes it if an overlay is shown. */
    drawFrame(elapsed: number): void {
        if (this.isShown) {
            this.probe.observe(() => this.effect.frame(elapsed));
        } else {
            this.probe.forget();
            this.effect.frame(elapsed);
        }
    }

    /** Draws the overlays of the last frame. */
    draw(): void {
        const { canvas, probe } = this;
        canvas.hidden = !this.isShown;
        if (!this.isShown) {
            return;
        }
        const context = canvas.getContext("2d") as CanvasRenderingContext2D;
        canvas.width = Math.round(canvas.clientWidth * devicePixelRatio);
        canvas.height = Math.round(canvas.clientHeight * devicePixelRatio);
        if (this.density) {
            drawDensity(context, probe);
        }
        if (this.velocity) {
            drawVelocity(context, this.effect, probe.velocity);
        }
    }

    private get isShown(): boolean {
        return this.velocity || this.density;
    }
}

/** Red, green, blue and alpha by density on a logarithmic scale. Ink too faint to see is blue. */
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
        const density = ink.bytes[at] + ink.bytes[at + 1] / 255;
        const level = Math.min(Math.round((255 * Math.log2(1 + 4 * density)) / 8), 255);
        image.data.set(densityColors[level], at);
    }
    const texture = new OffscreenCanvas(ink.width, ink.height);
    (texture.getContext("2d") as OffscreenCanvasRenderingContext2D).putImageData(image, 0, 0);
    context.save();
    context.scale(1, -1);
    context.drawImage(texture, 0, -context.canvas.height, context.canvas.width, context.canvas.height);
    context.restore();
}

function drawVelocity(context: CanvasRenderingContext2D, effect: Effect, field: VelocityField): void {
    context.lineWidth = 2 * devicePixelRatio;
    for (const line of effect.flowLines(field.bytes, field.columns, field.rows, context.canvas)) {
        drawLine(context, line);
    }
}

function drawLine(context: CanvasRenderingContext2D, { x, y, endX, endY, heat, strength }: FlowLine): void {
    context.strokeStyle = `rgb(255 ${Math.round(255 * (1 - 0.8 * heat))} 51 / ${strength})`;
    context.beginPath();
    context.moveTo(x, y);
    context.lineTo(endX, endY);
    context.stroke();
    context.fillStyle = `rgb(26 26 26 / ${strength})`;
    const dot = 1.5 * devicePixelRatio;
    context.fillRect(x - dot, y - dot, 2 * dot, 2 * dot);
}

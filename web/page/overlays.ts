// Draws the overlays over the effect: the velocity field as lines, the ink density in false colours.

import { flowLineStyle } from "../../build/web/settings";
import type { Effect, FlowLine } from "./effect";

export class Overlays {
    velocity = false;
    density = false;
    /** True if the last frame was observed, so that the overlays can be drawn. */
    private hasFrame = false;

    constructor(
        private readonly effect: Effect,
        private readonly canvas: HTMLCanvasElement,
    ) {}

    /** True if the last frame has the data that the shown overlays need. */
    get isCurrent(): boolean {
        return this.hasFrame || !this.isShown;
    }

    /** Draws a frame of the effect. Observes the frame if an overlay is shown. */
    drawFrame(elapsed: number): void {
        this.hasFrame = this.effect.observes = this.isShown;
        this.effect.frame(elapsed);
    }

    /** Draws the overlays of the last frame. */
    draw(): void {
        const { canvas } = this;
        canvas.hidden = !this.isShown;
        if (!this.isShown) {
            return;
        }
        const context = canvas.getContext("2d") as CanvasRenderingContext2D;
        canvas.width = Math.round(canvas.clientWidth * devicePixelRatio);
        canvas.height = Math.round(canvas.clientHeight * devicePixelRatio);
        if (this.density) {
            drawDensity(context, this.effect.densityImage());
        }
        if (this.velocity) {
            context.lineWidth = flowLineStyle.width * devicePixelRatio;
            this.effect.flowLines(canvas).forEach((line) => drawLine(context, line));
        }
    }

    private get isShown(): boolean {
        return this.velocity || this.density;
    }
}

/** Draws an image over the whole canvas. The first row of the image is the bottom row. */
function drawDensity(context: CanvasRenderingContext2D, image: ImageData | null): void {
    if (!image) {
        return;
    }
    const texture = new OffscreenCanvas(image.width, image.height);
    (texture.getContext("2d") as OffscreenCanvasRenderingContext2D).putImageData(image, 0, 0);
    context.save();
    context.scale(1, -1);
    context.drawImage(texture, 0, -context.canvas.height, context.canvas.width, context.canvas.height);
    context.restore();
}

function drawLine(context: CanvasRenderingContext2D, { x, y, endX, endY, color, opacity }: FlowLine): void {
    const css = (parts: readonly number[]) => `rgb(${parts.map((part) => Math.round(255 * part)).join(" ")} / ${opacity})`;
    const { dotShade, dotSide } = flowLineStyle;
    context.strokeStyle = css(color);
    context.beginPath();
    context.moveTo(x, y);
    context.lineTo(endX, endY);
    context.stroke();
    context.fillStyle = css([dotShade, dotShade, dotShade]);
    const side = dotSide * devicePixelRatio;
    context.fillRect(x - side / 2, y - side / 2, side, side);
}

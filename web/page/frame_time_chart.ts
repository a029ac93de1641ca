// Shows the durations of the newest frames as a line of text and as bars.

import type { Quality } from "./effect";
import type { Player } from "./player";

/** Frame duration in milliseconds at which a bar has the full height of the chart. */
const fullScale = 34;

export class FrameTimeChart {
    readonly element = document.createElement("figure");
    private readonly line = document.createElement("figcaption");
    private readonly canvas = document.createElement("canvas");

    constructor(private readonly player: Player) {
        this.element.className = "frame-times";
        this.canvas.width = 240;
        this.canvas.height = 40;
        this.canvas.setAttribute("aria-hidden", "true");
        this.element.append(this.canvas, this.line);
    }

    update(): void {
        const { newest } = this.player.times;
        const mean = (part: "between" | "effect") => {
            const known = newest.map((time) => time[part]).filter((time) => time !== undefined);
            return known.reduce((sum, time) => sum + time, 0) / known.length;
        };
        const { width, height } = this.player.stage.size;
        this.line.textContent = newest.some((time) => time.between !== undefined)
            ? `${(1000 / mean("between")).toFixed(0)} frames/s, ${mean("effect").toFixed(1)} ms of script per frame, ` +
              [`${width} × ${height}`, qualityLabel(this.player.effect.quality)].filter(Boolean).join(", ")
            : "";
        this.drawBars();
    }

    /** Draws one bar for each frame, and a horizontal line that marks 1/60 s. */
    private drawBars(): void {
        const context = this.canvas.getContext("2d") as CanvasRenderingContext2D;
        const { width, height } = this.canvas;
        const style = getComputedStyle(this.element);
        context.clearRect(0, 0, width, height);
        this.player.times.newest.forEach((time, index) => {
            const bar = (part: number, color: string) => {
                context.fillStyle = color;
                const barHeight = Math.min(part / fullScale, 1) * height;
                context.fillRect(2 * index, height - barHeight, 1.5, barHeight);
            };
            bar(time.between ?? 0, style.getPropertyValue("--edge"));
            bar(time.effect, style.getPropertyValue("--accent"));
        });
        context.fillStyle = style.color;
        context.globalAlpha = 0.4;
        context.fillRect(0, height - (1000 / 60 / fullScale) * height, width, 1);
        context.globalAlpha = 1;
    }
}

/** Returns a text about reduced detail, for example "mesh at 33 %", or "" at full detail. 100 % is a vertex per cell. */
export function qualityLabel({ level, mesh, pixels }: Quality): string {
    const reductions = [
        level > 0 && mesh < 1 && `mesh at ${Math.round(100 * mesh)} %`,
        pixels < 1 && `screen at ${100 * pixels} %`,
    ];
    return reductions.filter(Boolean).join(", ");
}

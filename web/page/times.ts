// How long the newest frames took, as a line and as bars.

import type { Quality } from "./effect";
import type { Player } from "./player";

const fullScale = 34; // milliseconds

export class Times {
    readonly element = document.createElement("figure");
    private readonly line = document.createElement("figcaption");
    private readonly canvas = document.createElement("canvas");

    constructor(private readonly player: Player) {
        this.element.className = "times";
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
            ? `${(1000 / mean("between")).toFixed(0)} frames/s, ${mean("effect").toFixed(1)} ms of script each, ` +
              [`${width} × ${height}`, qualityLabel(this.player.effect.quality)].filter(Boolean).join(", ")
            : "";
        this.drawBars();
    }

    /** One a frame; the line is a 60th of a second. */
    private drawBars(): void {
        const context = this.canvas.getContext("2d") as CanvasRenderingContext2D;
        const { width, height } = this.canvas;
        const style = getComputedStyle(this.element);
        context.clearRect(0, 0, width, height);
        this.player.times.newest.forEach((time, at) => {
            const bar = (part: number, color: string) => {
                context.fillStyle = color;
                const tall = Math.min(part / fullScale, 1) * height;
                context.fillRect(2 * at, height - tall, 1.5, tall);
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

/** Returns the detail that is left out; "" for all of it. */
export function qualityLabel({ cells, pixels }: Quality): string {
    const lessened = [cells > 1 && `waves drawn at ${Math.round(100 / cells)} %`, pixels < 1 && `screen at ${100 * pixels} %`];
    return lessened.filter(Boolean).join(", ");
}

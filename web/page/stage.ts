// Keeps the canvas and the backgrounds at the wanted size in pixels, and passes the backgrounds to the effect.

import { resizeDelay } from "../../build/web/settings";
import { defaultSources, type Backgrounds, type Source } from "./backgrounds";
import type { Effect, Size } from "./effect";
import { Paintings } from "./paintings";
import { onPixelRatio, pixelSize } from "../engine/screen";

export class Stage {
    readonly backgrounds: Backgrounds;
    /** True if a moving background has a new frame that is not uploaded yet. */
    hasMoved = false;
    private readonly paintings: Paintings;
    /**
     * True after the first call of needSecond. Until then, the second background is not painted, which shortens the
     * start of the page.
     */
    private secondNeeded = false;
    private current: Size = { width: 0, height: 0 };

    constructor(
        private readonly effect: Effect,
        readonly canvas: HTMLCanvasElement,
        onResize: () => void,
    ) {
        this.paintings = new Paintings(effect);
        this.backgrounds = { sources: defaultSources(effect.paintingNames) };
        let timer = 0;
        const follow = () => {
            clearTimeout(timer);
            timer = window.setTimeout(onResize, resizeDelay);
        };
        new ResizeObserver(follow).observe(canvas);
        onPixelRatio(follow);
    }

    /** True after the first start of the effect, which sets `current`. */
    get hasStarted(): boolean {
        return this.current.width > 0;
    }

    get size(): Size {
        return this.current;
    }

    /**
     * Size in pixels that the canvas must have. It follows from the CSS box of the canvas. Adaptive quality can reduce
     * the size, but not during a recording or replay.
     */
    get wantedSize(): Size {
        const { effect, canvas } = this;
        return effect.isRecording || effect.isReplaying ? this.fullSize : pixelSize(canvas, effect.quality.pixels);
    }

    /** True if the canvas has the wanted size. */
    get hasWantedSize(): boolean {
        return isSameSize(this.wantedSize, this.current);
    }

    /** Restarts the effect at the wanted size. Keeps the waves. */
    restart(): void {
        this.applySize(this.wantedSize);
    }

    /** Undoes a size reduction by adaptive quality, so that a gesture gives the same result on every machine. */
    useAllPixels(): void {
        if (!isSameSize(this.fullSize, this.current)) {
            this.applySize(this.fullSize);
        }
    }

    /** Uploads the backgrounds again if a moving one has a new frame. */
    uploadMoved(): void {
        if (this.hasMoved) {
            this.uploadBackgrounds();
        }
    }

    /** Passes the backgrounds to the effect. Does nothing before the first start. */
    uploadBackgrounds(): void {
        this.hasMoved = false;
        if (!this.hasStarted) {
            return;
        }
        const { sources } = this.backgrounds;
        const first = this.pixelsOf(sources[0]);
        this.effect.setBackgrounds(first, this.secondNeeded ? this.pixelsOf(sources[1]) : first);
        this.paintings.keepOnly(sources);
    }

    /** Passes the second background to the effect. Does nothing if the effect already has the second background. */
    needSecond(): void {
        if (!this.secondNeeded) {
            this.secondNeeded = true;
            this.uploadBackgrounds();
        }
    }

    private pixelsOf(source: Source): ImageData {
        return typeof source === "string" ? this.paintings.at(source, this.current) : source.pixels(this.current);
    }

    private get fullSize(): Size {
        return pixelSize(this.canvas, 1);
    }

    private applySize(size: Size): void {
        this.current = size;
        this.canvas.width = size.width;
        this.canvas.height = size.height;
        this.uploadBackgrounds();
        this.effect.resize(size);
    }
}

export function isSameSize(a: Size, b: Size): boolean {
    return a.width === b.width && a.height === b.height;
}

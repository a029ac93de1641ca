// Keeps the canvas and the backgrounds at the wanted size in pixels.

import { resizeDelay } from "../../build/web/settings";
import { defaultBackgrounds, croppedPixels } from "./backgrounds";
import type { Effect, Size } from "./effect";
import { onPixelRatio, pixelSize } from "../engine/screen";

export class Stage {
    readonly backgrounds = defaultBackgrounds();
    /** True if a moving background has a new frame. */
    hasMoved = false;
    private current: Size = { width: 0, height: 0 };

    constructor(
        private readonly effect: Effect,
        readonly canvas: HTMLCanvasElement,
        onResize: () => void,
    ) {
        let timer = 0;
        const follow = () => {
            clearTimeout(timer);
            timer = window.setTimeout(onResize, resizeDelay);
        };
        new ResizeObserver(follow).observe(canvas);
        onPixelRatio(follow);
    }

    get size(): Size {
        return this.current;
    }

    /** True if the canvas has the size that its CSS box and the quality require. */
    get hasWantedSize(): boolean {
        return isSame(this.wantedSize, this.current);
    }

    /** Starts the effect at the wanted size and keeps the waves. */
    restart(): void {
        this.applySize(this.wantedSize);
    }

    /** Restores the full size, so that a gesture gives the same result on every machine. */
    useAllPixels(): void {
        if (!isSame(this.fullSize, this.current)) {
            this.applySize(this.fullSize);
        }
    }

    /** Uploads the backgrounds again if a moving one has a new frame. */
    uploadMoved(): void {
        if (this.hasMoved) {
            this.uploadBackgrounds();
        }
    }

    uploadBackgrounds(): void {
        this.hasMoved = false;
        const { sources } = this.backgrounds;
        this.effect.setBackgrounds(
            croppedPixels(sources[0], this.current, this.fullSize),
            croppedPixels(sources[1], this.current, this.fullSize),
        );
    }

    private get fullSize(): Size {
        return pixelSize(this.canvas, 1);
    }

    private get wantedSize(): Size {
        const { effect, canvas } = this;
        return effect.isRecording || effect.isReplaying ? this.fullSize : pixelSize(canvas, effect.quality.pixels);
    }

    private applySize(size: Size): void {
        this.current = size;
        this.canvas.width = size.width;
        this.canvas.height = size.height;
        this.uploadBackgrounds();
        this.effect.resize(size);
    }
}

function isSame(a: Size, b: Size): boolean {
    return a.width === b.width && a.height === b.height;
}

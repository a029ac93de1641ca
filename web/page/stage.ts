// Keeps the canvas and the backgrounds at the wanted size in pixels.

import { defaultBackgrounds, croppedPixels, type Backgrounds, type Source } from "./backgrounds";
import type { Effect, Size } from "./effect";
import { Paintings } from "./paintings";
import { onPixelRatio, pixelSize } from "./screen";

/** Milliseconds from the last change of size to the restart. A window that is being resized changes size many times. */
const resizeDelay = 150;

export class Stage {
    readonly backgrounds: Backgrounds;
    private readonly paintings: Paintings;
    /** True after needSecond. Until then the second background is not painted, which saves time at the start. */
    private secondNeeded = false;
    private current: Size = { width: 0, height: 0 };

    constructor(
        private readonly effect: Effect,
        readonly canvas: HTMLCanvasElement,
        onResize: () => void,
    ) {
        this.paintings = new Paintings(effect);
        this.backgrounds = defaultBackgrounds(this.paintings);
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

    /** Restarts the effect at the wanted size. */
    restart(): void {
        this.applySize(this.wantedSize);
    }

    /** Restores the full size, so that a gesture gives the same result on every machine. */
    useAllPixels(): void {
        if (!isSame(this.fullSize, this.current)) {
            this.applySize(this.fullSize);
        }
    }

    uploadBackgrounds(): void {
        const { sources } = this.backgrounds;
        const first = this.pixelsOf(sources[0]);
        this.effect.setBackgrounds(first, this.secondNeeded ? this.pixelsOf(sources[1]) : first);
        this.paintings.keepOnly(sources);
    }

    /** Makes sure that the effect has the second background. */
    needSecond(): void {
        if (!this.secondNeeded) {
            this.secondNeeded = true;
            this.uploadBackgrounds();
        }
    }

    private pixelsOf(source: Source): ImageData {
        return source instanceof ImageBitmap
            ? croppedPixels(source, this.current)
            : this.paintings.at(source, this.current);
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
        this.effect.restart(size);
    }
}

function isSame(a: Size, b: Size): boolean {
    return a.width === b.width && a.height === b.height;
}

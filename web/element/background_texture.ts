// The background's texture in the GL context: uploads the picture, and each frame of a video.

import type { Size } from "../engine/size";
import { Background, isVideo, type BackgroundSource } from "./background";
import type { Effect } from "./effect";

/** Owner of the background. */
export interface TextureOwner {
    /** Element whose box the water covers. */
    readonly area: HTMLElement;
    readonly source: BackgroundSource | null;
    /** Called if the background cannot be drawn. */
    onBackgroundError(): void;
}

export class BackgroundTexture {
    /** Size of the water in pixels. */
    size: Size = { width: 0, height: 0 };
    private readonly background: Background;
    /** True if a video has a frame that is not uploaded. */
    private needsUpload = false;
    private cancelVideo = () => {};

    constructor(
        private readonly effect: Effect,
        private readonly gl: WebGLRenderingContext,
        private readonly owner: TextureOwner,
        /** Requests a frame of the water. */
        private readonly requestFrame: () => void,
        private readonly signal: AbortSignal,
    ) {
        this.background = new Background(owner.area);
        effect.uploadBackground = () => this.upload();
    }

    /** Shows a changed background. */
    change(): void {
        this.passInkSource();
        this.effect.loadBackground();
        this.followVideo();
    }

    /** Passes a small copy of the background, from which attract mode chooses its inks. Drops the texture. */
    passInkSource(): void {
        try {
            this.effect.setInkSource(this.background.smallCopy(this.owner.source));
        } catch {
            this.owner.onBackgroundError();
        }
    }

    /** Uploads the frame of a video that has come since the last call. */
    showVideo(): void {
        if (this.needsUpload || this.playsUnreported) {
            this.needsUpload = false;
            this.gl.bindTexture(this.gl.TEXTURE_2D, this.effect.backgroundTexture);
            this.upload();
        }
    }

    /** True if a video plays whose frames the browser does not report. */
    get playsUnreported(): boolean {
        const { source } = this.owner;
        return source !== null && isVideo(source) && !source.paused && !("requestVideoFrameCallback" in source);
    }

    /** Uploads the image into the bound texture. */
    private upload(): void {
        const { gl } = this;
        const image = this.background.draw(this.owner.source, this.size);
        try {
            gl.texImage2D(gl.TEXTURE_2D, 0, gl.RGBA, gl.RGBA, gl.UNSIGNED_BYTE, image);
        } catch {
            this.owner.onBackgroundError();
        }
        gl.bindTexture(gl.TEXTURE_2D, null);
    }

    /** Requests a frame of the water for each frame of a video, as long as it is the background. */
    followVideo(): void {
        const { source } = this.owner;
        this.cancelVideo();
        if (source && isVideo(source) && "requestVideoFrameCallback" in source) {
            const callback = source.requestVideoFrameCallback(() => {
                if (this.owner.source === source && !this.signal.aborted) {
                    this.needsUpload = true;
                    this.requestFrame();
                    this.followVideo();
                }
            });
            this.cancelVideo = () => source.cancelVideoFrameCallback(callback);
        }
    }
}

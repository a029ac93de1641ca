// The background's texture in the GL context: uploads the picture, and each frame of a video.

import type { Size } from "../engine/size";
import { Background, isDrawable, isVideo, type BackgroundSource } from "./background";
import type { Effect } from "./effect";
import { VideoPass } from "./video_pass";

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
    private videoPass: VideoPass | null = null;

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
        this.reportError(() => this.effect.setInkSource(this.background.smallCopy(this.owner.source)));
    }

    /** Draws the frame of a video that has come since the last call. */
    showVideo(): void {
        const { source } = this.owner;
        if (source && isVideo(source) && (this.needsUpload || this.playsUnreported)) {
            this.needsUpload = false;
            this.reportError(() => this.drawVideo(source));
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
        const { source } = this.owner;
        const { width, height } = this.size;
        this.reportError(() => {
            if (source && isVideo(source) && isDrawable(source)) {
                gl.texImage2D(gl.TEXTURE_2D, 0, gl.RGBA, width, height, 0, gl.RGBA, gl.UNSIGNED_BYTE, null);
                this.drawVideo(source);
            } else {
                const image = this.background.draw(source, this.size);
                gl.texImage2D(gl.TEXTURE_2D, 0, gl.RGBA, gl.RGBA, gl.UNSIGNED_BYTE, image);
            }
        });
        gl.bindTexture(gl.TEXTURE_2D, null);
    }

    /** Draws the current frame of a video into the texture. */
    private drawVideo(video: HTMLVideoElement): void {
        const { gl, effect, size } = this;
        if (!this.videoPass?.isUsable) {
            this.videoPass = new VideoPass(gl);
        }
        this.videoPass.draw(video, effect.backgroundTexture!, size, this.background.layoutOf(video));
    }

    /** Calls a function that fails if the background is from another origin without CORS. */
    private reportError(use: () => void): void {
        try {
            use();
        } catch {
            this.owner.onBackgroundError();
        }
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

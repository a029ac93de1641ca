// The GL texture of the background. Uploads the picture or the canvas once, and a video frame by frame.

import type { Size } from "../engine/size";
import { Background, isDrawable, isVideo, type BackgroundSource } from "./background";
import type { Effect } from "./effect";
import { VideoPass } from "./video_pass";

/** Object that has the background and the area of the page that the background covers. */
export interface TextureOwner {
    /** Element whose box the water covers. */
    readonly area: HTMLElement;
    readonly source: BackgroundSource | null;
    /** Called if the background cannot be drawn, because it is from another origin without CORS. */
    onBackgroundError(): void;
}

export class BackgroundTexture {
    /** Size of the water in pixels. */
    size: Size = { width: 0, height: 0 };
    private readonly background: Background;
    /** True if the video has a new frame that is not uploaded yet. */
    private needsUpload = false;
    /** Cancels the request for the video's next frame. */
    private cancelVideo = () => {};
    /** GL objects that draw a video into the texture. Null before the first video. */
    private videoPass: VideoPass | null = null;

    constructor(
        private readonly effect: Effect,
        private readonly gl: WebGLRenderingContext,
        private readonly owner: TextureOwner,
        /** Requests that the water draws a frame. */
        private readonly requestFrame: () => void,
        private readonly signal: AbortSignal,
    ) {
        this.background = new Background(owner.area);
        effect.uploadBackground = () => this.upload();
    }

    /** Shows the owner's new background. Call it when the background has changed. */
    change(): void {
        this.passInkSource();
        this.effect.loadBackground();
        this.followVideo();
    }

    /** Shows the background in a restored context, in which the old GL objects do not exist. */
    restore(): void {
        this.videoPass = null;
        this.change();
    }

    /**
     * Passes a small copy of the background to the effect. Attract mode chooses its ink colours from this copy. A
     * running effect then replaces the image of its texture by one black pixel, so the caller must upload the
     * background again.
     */
    passInkSource(): void {
        this.reportError(() => this.effect.setInkSource(this.background.smallCopy(this.owner.source)));
    }

    /** Draws the video's current frame into the texture if the video has a new frame since the last call. */
    showVideo(): void {
        const { source } = this.owner;
        if (source && isVideo(source) && isDrawable(source) && (this.needsUpload || this.playsUnreported)) {
            this.needsUpload = false;
            this.reportError(() => this.drawVideo(source));
        }
    }

    /** True if the background is a playing video and the browser does not report the video's new frames. */
    get playsUnreported(): boolean {
        const { source } = this.owner;
        return source !== null && isVideo(source) && !source.paused && !("requestVideoFrameCallback" in source);
    }

    /** Uploads the background into the bound texture. */
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

    /** Draws the current frame of a video into the texture of the background. */
    private drawVideo(video: HTMLVideoElement): void {
        const { gl, effect, size } = this;
        this.videoPass ??= new VideoPass(gl);
        this.videoPass.draw(video, effect.backgroundTexture!, size, this.background.layoutOf(video));
    }

    /**
     * Calls `use`, which throws if the background is from another origin without CORS. Reports this error with the
     * owner's onBackgroundError. Ignores errors that a lost context causes.
     */
    private reportError(use: () => void): void {
        try {
            use();
        } catch {
            if (!this.gl.isContextLost()) {
                this.owner.onBackgroundError();
            }
        }
    }

    /** Makes the water draw a frame for each new frame of the video, as long as the video is the background. */
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

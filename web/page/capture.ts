// Saves screenshots, films and recorded gestures as files.

import { commandTexts, sharedTexts } from "../../build/web/settings";
import { download, share, uniqueName } from "./files";
import { blobOf } from "./paused_frame";
import type { Player } from "./player";
import { attempt, showBadge, showToast } from "./toast";

const filmTypes = ["video/mp4;codecs=avc1", "video/webm;codecs=vp9", "video/webm"];

/** Side of a thumbnail in pixels, the same as that of the built-in presets' thumbnails. */
const thumbnailSide = 128;

export class Capture {
    private recorder: MediaRecorder | null = null;
    private hideRecordingBadge = () => {};
    /** Script of the newest recorded gesture. */
    private gesture = "";

    constructor(private readonly player: Player) {
        player.effect.onRecordingEnd = (script) => this.saveRecording(script);
    }

    async screenshot(): Promise<void> {
        const image = await this.takeScreenshot();
        if (image) {
            const name = uniqueName("screenshot", ".png");
            download(image, name);
            showToast(`Saved ${name}`);
        }
    }

    /** Opens the device's sheet for sharing with a screenshot. */
    async shareScreenshot(): Promise<void> {
        const image = await this.takeScreenshot();
        if (image) {
            await share(image, uniqueName("screenshot", ".png"));
        }
    }

    /** Returns a square thumbnail of the frame on the screen as a data URL, or undefined if there is no frame. */
    async thumbnail(): Promise<string | undefined> {
        const image = this.player.context.isLost ? null : await this.takeScreenshot();
        return image ? thumbnailOf(await createImageBitmap(image)) : undefined;
    }

    toggleFilm(): void {
        if (this.recorder) {
            this.recorder.stop();
        } else {
            void attempt(() => this.startFilm());
        }
    }

    toggleRecording(): void {
        if (this.player.effect.isRecording) {
            this.player.gestures.finishRecording();
        } else {
            this.player.gestures.startRecording();
            this.hideRecordingBadge = showBadge("Gesture");
            showToast("Recording a gesture. The water has started anew");
        }
    }

    replayNewest(): void {
        this.player.context.need();
        this.player.gestures.finishRecording();
        if (this.gesture) {
            this.player.gestures.replay(this.gesture, "the recording");
        } else {
            showToast(sharedTexts.noRecording);
        }
    }

    /** Returns the frame on the screen as a PNG. */
    private takeScreenshot(): Promise<Blob | null> {
        const { player } = this;
        player.context.need();
        if (player.pause.isOn && player.pause.frame.isCurrent) {
            return player.pause.frame.blob();
        }
        return new Promise((resolve) => {
            const take = () => {
                player.afterFrame.delete(take);
                resolve(blobOf(player.canvas));
            };
            player.afterFrame.add(take);
            player.noteInput();
        });
    }

    private saveRecording(script: string): void {
        this.hideRecordingBadge();
        this.gesture = script;
        const name = uniqueName("gesture", ".gesture");
        download(script, name);
        showToast(`Saved ${name}. ${commandTexts.replay.label} plays it again`);
    }

    private startFilm(): void {
        const type = window.MediaRecorder && filmTypes.find((each) => MediaRecorder.isTypeSupported(each));
        if (!type) {
            throw new Error("This browser cannot record videos: it lacks MediaRecorder or a video format");
        }
        const parts: Blob[] = [];
        const stream = this.player.canvas.captureStream(60);
        const recorder = new MediaRecorder(stream, {
            mimeType: type,
            videoBitsPerSecond: 12e6,
        });
        const hideBadge = showBadge("Video");
        recorder.ondataavailable = (event) => parts.push(event.data);
        recorder.onstop = () => {
            this.recorder = null;
            stream.getTracks().forEach((track) => track.stop());
            this.player.filming = false;
            this.player.loop.wake(); // adaptive quality may change the canvas size again
            hideBadge();
            const name = uniqueName("film", type.startsWith("video/mp4") ? ".mp4" : ".webm");
            download(new Blob(parts, { type: type.split(";")[0] as string }), name);
            showToast(`Saved ${name}`);
        };
        recorder.start(1000);
        this.recorder = recorder;
        this.player.filming = true;
        this.player.noteInput(); // draws the first frame of the film
    }
}

function thumbnailOf(image: ImageBitmap): string {
    const side = Math.min(image.width, image.height);
    const canvas = document.createElement("canvas");
    canvas.width = canvas.height = thumbnailSide;
    const [left, top] = [(image.width - side) / 2, (image.height - side) / 2];
    canvas.getContext("2d")?.drawImage(image, left, top, side, side, 0, 0, thumbnailSide, thumbnailSide);
    return canvas.toDataURL("image/jpeg", 0.85);
}

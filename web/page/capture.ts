// Saves screenshots, films and recorded gestures as files.

import { download, uniqueName } from "./files";
import { blobOf } from "./paused_frame";
import type { Player } from "./player";
import { attempt, showBadge, showToast } from "./toast";

const filmTypes = ["video/mp4;codecs=avc1", "video/webm;codecs=vp9", "video/webm"];

export class Capture {
    private recorder: MediaRecorder | null = null;
    private hideRecordingBadge = () => {};
    /** Script of the newest recorded gesture. */
    private gesture = "";

    constructor(private readonly player: Player) {
        player.gestures.onRecording = (script) => this.saveRecording(script);
    }

    async screenshot(): Promise<void> {
        const image = await this.takeScreenshot();
        if (image) {
            const name = uniqueName("screenshot", ".png");
            download(image, name);
            showToast(`saved ${name}`);
        }
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
            this.hideRecordingBadge = showBadge("gesture");
            showToast("recording a gesture from a restart");
        }
    }

    replayNewest(): void {
        this.player.context.need();
        this.player.gestures.finishRecording();
        if (this.gesture) {
            this.player.gestures.replay(this.gesture, "the recording");
        } else {
            showToast("no gesture has been recorded yet: press R to record one");
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
        showToast(`recorded ${name}: drop the file here to replay it`);
    }

    private startFilm(): void {
        const type = window.MediaRecorder && filmTypes.find((each) => MediaRecorder.isTypeSupported(each));
        if (!type) {
            throw new Error("this browser cannot record films: it lacks MediaRecorder or a video format");
        }
        const parts: Blob[] = [];
        const stream = this.player.canvas.captureStream(60);
        const recorder = new MediaRecorder(stream, {
            mimeType: type,
            videoBitsPerSecond: 12e6,
        });
        const hideBadge = showBadge("film");
        recorder.ondataavailable = (event) => parts.push(event.data);
        recorder.onstop = () => {
            this.recorder = null;
            stream.getTracks().forEach((track) => track.stop());
            this.player.filming = false;
            this.player.loop.wake(); // adaptive quality may change the canvas size again
            hideBadge();
            const name = uniqueName("film", type.startsWith("video/mp4") ? ".mp4" : ".webm");
            download(new Blob(parts, { type: type.split(";")[0] as string }), name);
            showToast(`saved ${name}`);
        };
        recorder.start(1000);
        this.recorder = recorder;
        this.player.filming = true;
        this.player.noteInput(); // draws the first frame of the film
    }
}

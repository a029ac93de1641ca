// Screenshots, films and recorded gestures, handed to the visitor as files.

import { download, freshName } from "./files";
import { attempt, mark, say } from "./notice";
import { blobOf } from "./paused_frame";
import type { Player } from "./player";

const filmTypes = ["video/mp4;codecs=avc1", "video/webm;codecs=vp9", "video/webm"];

export class Keeping {
    private recorder: MediaRecorder | null = null;
    private endRecordingMark = () => {};
    /** The newest recorded gesture, to be played again. */
    private gesture = "";

    constructor(private readonly player: Player) {
        player.onRecording = (script) => this.keepRecording(script);
    }

    async screenshot(): Promise<void> {
        const picture = await this.takeScreenshot();
        if (picture) {
            const name = freshName("picture", ".png");
            download(picture, name);
            say(`saved ${name}`);
        }
    }

    switchFilm(): void {
        if (this.recorder) {
            this.recorder.stop();
        } else {
            void attempt(() => this.startFilm());
        }
    }

    switchRecording(): void {
        if (this.player.effect.isRecording) {
            this.player.finishRecording();
        } else {
            this.player.startRecording();
            this.endRecordingMark = mark("gesture");
            say("recording the gesture, from calm water");
        }
    }

    replayNewest(): void {
        this.player.needContext();
        this.player.finishRecording();
        if (this.gesture) {
            this.player.replay(this.gesture, "the recording");
        } else {
            say("nothing has been recorded yet: R records a gesture");
        }
    }

    /** Returns what the screen shows. */
    private takeScreenshot(): Promise<Blob | null> {
        const { player } = this;
        player.needContext();
        if (player.view.paused && player.pausedFrame.isCurrent) {
            return player.pausedFrame.blob();
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

    private keepRecording(script: string): void {
        this.endRecordingMark();
        this.gesture = script;
        const name = freshName("gesture", ".gesture");
        download(script, name);
        say(`recorded ${name}; it can be dropped here to be played again`);
    }

    private startFilm(): void {
        const type = window.MediaRecorder && filmTypes.find((one) => MediaRecorder.isTypeSupported(one));
        if (!type) {
            throw new Error("this browser cannot film a page");
        }
        const parts: Blob[] = [];
        const stream = this.player.canvas.captureStream(60);
        const recorder = new MediaRecorder(stream, {
            mimeType: type,
            videoBitsPerSecond: 12e6,
        });
        const endMark = mark("film");
        recorder.ondataavailable = (event) => parts.push(event.data);
        recorder.onstop = () => {
            this.recorder = null;
            stream.getTracks().forEach((track) => track.stop());
            this.player.filming = false;
            this.player.loop.wake(); // the size may change again
            endMark();
            const name = freshName("film", type.startsWith("video/mp4") ? ".mp4" : ".webm");
            download(new Blob(parts, { type: type.split(";")[0] as string }), name);
            say(`filmed ${name}`);
        };
        recorder.start(1000);
        this.recorder = recorder;
        this.player.filming = true;
        this.player.noteInput(); // the film's first frame
    }
}

import { Effect } from "./effect";
import { firstPictures, pixelsOf } from "./pictures";
import { openContext, pixelSize } from "./screen";
import { Finger } from "./finger";
import { FrameClock, frameTime } from "./frame_clock";
async function main() {
    const canvas = document.getElementById("water") as HTMLCanvasElement;
    const gl = openContext(canvas)!;
    const effect = await Effect.load(gl);
    const size = pixelSize(canvas);
    canvas.width = size.width; canvas.height = size.height;
    const pictures = firstPictures();
    effect.showPicture(0, pixelsOf(pictures.sources[0], size));
    effect.showPicture(1, pixelsOf(pictures.sources[1], size));
    effect.restart(size);
    new Finger(canvas, { touch: (a,x,y,p)=>effect.touch(a,x,y,p), pressure: ()=>0.5});
    const clock = new FrameClock();
    clock.skip(performance.now());
    const tick = (now: number) => { for (const t of clock.take(now, 1, false)) effect.frame(t); requestAnimationFrame(tick); };
    tick(performance.now());
    (window as any).velmora = { effect, frameTime };
}
void main();

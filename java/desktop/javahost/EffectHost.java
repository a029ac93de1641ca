package javahost;

import android.graphics.Bitmap;
import com.corvane.android.visualeffect.lock.velmora.NativeForVelmora;
import velmora.host.Backgrounds;
import velmora.host.EffectRenderer;
import velmora.host.EffectScene;
import velmora.host.FramePacer;
import velmora.host.GestureScript;
import velmora.host.ReflectionMap;
import velmora.host.SceneTarget;

/** Draws a scene frame by frame in an off-screen GL context. Use it on one thread. */
final class EffectHost implements AutoCloseable {
    private final NativeForVelmora velmora = new NativeForVelmora();
    private final int width;
    private final int height;
    private final EffectRenderer renderer = new EffectRenderer(velmora, ReflectionMap.makeBitmap());
    private final EffectScene scene;
    private final GestureScript.Target target;
    private long context;
    private long time;

    EffectHost(int width, int height, RgbaImage background) {
        this.width = width;
        this.height = height;
        scene = new EffectScene(velmora, backgroundsOf(background));
        target = new SceneTarget(scene) {
            @Override
            public void loseContext() {
                close();
                context = HostKit.createContext(width, height);
                renderer.contextCreated();
            }
        };
        context = HostKit.createContext(width, height);
        scene.resize(width, height);
    }

    private static Backgrounds backgroundsOf(RgbaImage background) {
        return new Backgrounds() {
            @Override
            public Bitmap background(int screenWidth, int screenHeight) {
                return background.toBitmap();
            }

            @Override
            public Bitmap secondBackground(int screenWidth, int screenHeight) {
                return RgbaImage.testImage(screenHeight, screenWidth).toBitmap();
            }
        };
    }

    /** Applies those events of a script that belong to frame number `frame`. */
    void apply(GestureScript script, int frame) { script.applyFrame(frame, target); }

    boolean inkShown() { return velmora.getClearInkValue() != 0; }

    /** Advances the time by 1/60 s and draws the next frame. */
    void frame() {
        time += FramePacer.FRAME_TIME;
        renderer.drawFrame(scene, time);
    }

    RgbaImage screenshot() {
        return new RgbaImage(width, height, HostKit.readScreen(width, height));
    }

    @Override
    public void close() {
        HostKit.destroyContext(context);
        context = 0;
    }
}

package javahost;

import android.graphics.Bitmap;
import com.corvane.android.visualeffect.lock.velmora.NativeForVelmora;
import velmora.host.Backgrounds;
import velmora.host.EffectRenderer;
import velmora.host.EffectScene;
import velmora.host.FramePacer;
import velmora.host.GestureScript;
import velmora.host.ReflectionMap;

/** One scene in an off-screen GL context, drawn frame by frame. Everything runs on one thread. */
final class EffectHost implements GestureScript.Target, AutoCloseable {
    private final NativeForVelmora velmora = new NativeForVelmora();
    private final int width;
    private final int height;
    private final EffectRenderer renderer = new EffectRenderer(velmora, ReflectionMap.makeBitmap());
    private final EffectScene scene;
    private long context;
    private long time;

    EffectHost(int width, int height, RgbaImage background) {
        this.width = width;
        this.height = height;
        scene = new EffectScene(velmora, backgroundsOf(background));
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

    @Override
    public void touch(int action, double x, double y, float pressure) {
        scene.touch(action, x, y, pressure);
    }

    @Override
    public void setInk(float red, float green, float blue) {
        scene.setInk(red, green, blue);
    }

    @Override
    public void showSecondBackground(boolean on) {
        scene.showSecondBackground(on);
    }

    @Override
    public void clearInk() {
        scene.clearInk();
    }

    boolean inkShown() { return velmora.getClearInkValue() != 0; }

    /** Destroys the GL context with everything in it and makes a new one. */
    @Override
    public void loseContext() {
        close();
        context = HostKit.createContext(width, height);
        renderer.contextCreated();
    }

    /** Draws the next frame, a 60th of a second later. */
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

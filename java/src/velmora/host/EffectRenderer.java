package velmora.host;

import android.graphics.Bitmap;
import com.corvane.android.visualeffect.lock.velmora.NativeForVelmora;

/**
 * Calls the library in the order that a GL context requires: set-up when the size is known, then
 * textures, then frames. Several scenes can use the renderer, one after the other. All calls come
 * from the render thread while the context is current.
 *
 * <p>The library has one state per process. If a process has two renderers, only the renderer that
 * called activate last draws.
 */
public final class EffectRenderer {
    private static final int REFLECTION_SLOT = 0;
    private static final int BACKGROUND_SLOT = 1;
    private static final int SECOND_BACKGROUND_SLOT = 2;

    /** Maximum time in nanoseconds by which the effect advances in one frame. */
    private static final long MAX_ELAPSED = 4 * FramePacer.FRAME_TIME;

    /**
     * The only renderer of this process that draws, or null if none is active. Guarded by the
     * class's lock.
     */
    private static EffectRenderer active;

    private final NativeForVelmora velmora;
    private final Bitmap reflectionMap;
    private boolean contextIsNew = true;
    private boolean isActive;
    private EffectScene shown;
    private long lastFrame;
    private boolean runs;

    /**
     * Creates a renderer. `reflectionMap` is the image that waves reflect: a square ARGB_8888
     * bitmap.
     */
    public EffectRenderer(NativeForVelmora velmora, Bitmap reflectionMap) {
        this.velmora = velmora;
        this.reflectionMap = reflectionMap;
    }

    /**
     * Tells the renderer that a new context is current. Do not call it if only the surface is new:
     * the library's objects and the ink then still exist.
     */
    public void contextCreated() { contextIsNew = true; }

    /**
     * Makes this renderer the one that draws in this process. Any other renderer stops drawing. Any
     * thread can call this method.
     */
    public void activate() {
        synchronized (EffectRenderer.class) {
            if (active != this) {
                active = this;
                isActive = false;
            }
        }
    }

    /** Gives up the right to draw and releases the scene, so that its backgrounds can be freed. */
    public void release() {
        synchronized (EffectRenderer.class) {
            active = active == this ? null : active;
            shown = null;
        }
    }

    /**
     * Draws the scene into the current surface. Returns false and draws nothing if the scene has no
     * size yet or another renderer of the process is active.
     *
     * @param time nanoseconds on any clock
     */
    public boolean drawFrame(EffectScene scene, long time) {
        if (!scene.hasSize() || !mayDraw()) {
            return false;
        }
        // Load outside the lock. Decoding takes long, and activate needs the lock on the UI thread.
        scene.loadBackgrounds();
        synchronized (EffectRenderer.class) {
            if (!mayDraw()) {
                return false;
            }
            activate();
            boolean goesOn = runs && scene == shown;
            setUp(scene);
            // After a pause, water and rain advance by one frame instead of catching up. The
            // difference of the times can be negative: EffectStage.drawNow passes the time of its
            // call, but the next frame can have the earlier time of a display refresh.
            long elapsed = goesOn ? time - lastFrame : FramePacer.FRAME_TIME;
            scene.frame(Math.max(0, Math.min(elapsed, MAX_ELAPSED)));
            runs = scene.needsFrame();
            lastFrame = time;
            return true;
        }
    }

    private boolean mayDraw() {
        synchronized (EffectRenderer.class) {
            return active == null || active == this;
        }
    }

    private void setUp(EffectScene scene) {
        boolean namesAreNew = contextIsNew || !isActive;
        boolean sceneIsNew = scene != shown;
        boolean settingIsNew = sceneIsNew || scene.setUpIsStale() || !isActive;
        if (settingIsNew) {
            velmora.onInitSetting(scene.width(), scene.height(), scene.inkEnabled());
        }
        if (namesAreNew) {
            velmora.onInitUVHBuffer();
        }
        if (namesAreNew || settingIsNew) {
            velmora.onInitGPU();
        }
        if (settingIsNew) {
            // End the gesture, so that a gesture that began on another screen does not continue on
            // this one.
            velmora.clearInkValue();
            scene.inkIsGone();
        }
        loadTextures(scene, namesAreNew, sceneIsNew);
        contextIsNew = false;
        isActive = true;
        shown = scene;
        scene.setUpIsDone();
    }

    private void loadTextures(EffectScene scene, boolean namesAreNew, boolean sceneIsNew) {
        if (namesAreNew) {
            load(reflectionMap, REFLECTION_SLOT);
        }
        if (namesAreNew || sceneIsNew || scene.texturesAreStale()) {
            load(scene.background(), BACKGROUND_SLOT);
            load(scene.secondBackground(), SECOND_BACKGROUND_SLOT);
            scene.texturesAreLoaded();
        }
    }

    private void load(Bitmap bitmap, int slot) {
        int result = velmora.LoadTextures(bitmap, slot);
        if (result < 0) {
            throw new HostException("the library cannot load the bitmap of texture " + slot
                + " (code " + result + "): pass a software bitmap of format ARGB_8888");
        }
    }
}

package velmora.host;

import android.graphics.Bitmap;
import com.corvane.android.visualeffect.lock.velmora.NativeForVelmora;

/**
 * Calls the library in its order for one GL context: set-up once a size is known, textures, frames.
 * Several scenes can share the renderer, one after the other. All calls come from the render thread
 * with the context current.
 *
 * <p>The library has one state per process. If a process has two renderers, the last one to call
 * activate draws, and the other one draws nothing.
 */
public final class EffectRenderer {
    private static final int REFLECTION_SLOT = 0;
    private static final int BACKGROUND_SLOT = 1;
    private static final int SECOND_BACKGROUND_SLOT = 2;

    /** Longest time that a frame advances the effect, in nanoseconds. */
    private static final long MAX_ELAPSED = 4 * FramePacer.FRAME_TIME;

    /** The renderer of the process whose GL names the library holds. Guarded by the class. */
    private static EffectRenderer active;

    private final NativeForVelmora velmora;
    private final Bitmap reflectionMap;
    private boolean contextIsNew = true;
    private boolean isActive;
    private EffectScene shown;
    private long lastFrame;
    private boolean runs;

    /** Takes the reflection map of the water, a square ARGB_8888 bitmap. */
    public EffectRenderer(NativeForVelmora velmora, Bitmap reflectionMap) {
        this.velmora = velmora;
        this.reflectionMap = reflectionMap;
    }

    /**
     * Notes that a new context is current. A new surface for the same context is not reported here:
     * the library's objects live on, and so does the ink.
     */
    public void contextCreated() { contextIsNew = true; }

    /** Takes the library over from another renderer of the process. Any thread. */
    public void activate() {
        synchronized (EffectRenderer.class) {
            if (active != this) {
                active = this;
                isActive = false;
            }
        }
    }

    /** Gives the library up, so that the process does not keep the scene and its backgrounds. */
    public void release() {
        synchronized (EffectRenderer.class) {
            active = active == this ? null : active;
            shown = null;
        }
    }

    /**
     * Draws the scene into the current surface. Returns false if the scene has no size yet or
     * another renderer of the process is active; the surface is unchanged then.
     *
     * @param time nanoseconds on any clock
     */
    public boolean drawFrame(EffectScene scene, long time) {
        if (!scene.hasSize() || !mayDraw()) {
            return false;
        }
        // Outside the lock, for which activate waits on the UI thread.
        scene.loadBackgrounds();
        synchronized (EffectRenderer.class) {
            if (!mayDraw()) {
                return false;
            }
            activate();
            boolean goesOn = runs && scene == shown;
            setUp(scene);
            // Water and rain do not catch up with a pause. A frame that the system waits for can be
            // later than the display's next frame.
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
            // A gesture on another screen must not go on here.
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

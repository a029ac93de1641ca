package velmora.host;

import android.graphics.Bitmap;
import com.corvane.android.visualeffect.lock.velmora.NativeForVelmora;
import java.util.ArrayList;
import java.util.List;

/**
 * The effect on one screen: size, water, backgrounds and touches. A scene still exists after its GL
 * context or surface is lost. All calls come from the render thread.
 */
public final class EffectScene {
    /**
     * Maximum distance in cells between the ripples of one finger movement. A longer movement
     * raises several ripples, which form a furrow.
     */
    private static final double RIPPLE_SPACING = 2.0;

    private static final double MAX_RIPPLES_AT_ONCE = 64.0;

    /**
     * Number of frames for which rain continues after the last touch: 20 seconds. If the rain never
     * ended, a phone would never be idle.
     */
    private static final int RAIN_FRAMES = 1200;

    private static final class Touch {
        final int action;
        final double x;
        final double y;
        final float pressure;

        Touch(int action, double x, double y, float pressure) {
            this.action = action;
            this.x = x;
            this.y = y;
            this.pressure = pressure;
        }

        boolean ends() {
            return action == NativeForVelmora.ACTION_UP || action == NativeForVelmora.ACTION_CANCEL;
        }
    }

    private final NativeForVelmora velmora;
    private final Backgrounds backgrounds;
    private final EffectSettings effect = new EffectSettings();
    private final float[] mvpMatrix = new float[16];
    private final List<Touch> pendingTouches = new ArrayList<>();
    private final IdleDetector idle = new IdleDetector();
    private final Rain rain = new Rain();
    private Settings settings = new Settings();
    private WaterSettings waterSettings = new WaterSettings();
    private int width;
    private int height;
    private WaterDriver water;
    private Bitmap background;
    private Bitmap secondBackground;
    private boolean setUpIsStale = true;
    private boolean texturesAreStale = true;
    private Touch lastTouch;
    private int rainFrames = RAIN_FRAMES;

    /** Creates a scene with the default settings. It draws nothing until its size is known. */
    public EffectScene(NativeForVelmora velmora, Backgrounds backgrounds) {
        this.velmora = velmora;
        this.backgrounds = backgrounds;
    }

    /** Sets the size of the surface in pixels. Does nothing if the size is empty or unchanged. */
    public void resize(int newWidth, int newHeight) {
        boolean isSame = newWidth == width && newHeight == height;
        if (isSame || newWidth < 1 || newHeight < 1) {
            return;
        }
        width = newWidth;
        height = newHeight;
        setUpIsStale = true;
        pendingTouches.clear();
        lastTouch = null;
        idle.fingerIsGone();
        replaceWater();
        replaceBackgrounds();
    }

    public int width() { return width; }

    public int height() { return height; }

    public Settings settings() { return settings; }

    /** Applies new settings. Waves continue. Ink also stays, unless ink is turned on or off. */
    public void setSettings(Settings newSettings) {
        setUpIsStale |= newSettings.isOn(Setting.WATER_ONLY) != settings.isOn(Setting.WATER_ONLY);
        settings = newSettings;
        settings.applyTo(effect);
        waterSettings = settings.water();
        restartRain();
        if (water != null && !water.adopt(waterSettings)) {
            WaterDriver earlier = water;
            replaceWater();
            water.resampleWaves(earlier);
        }
        idle.wake();
    }

    /** Discards the backgrounds, so that the next frame loads them again. */
    public void replaceBackgrounds() {
        background = null;
        secondBackground = null;
        texturesAreStale = true;
        idle.wake();
    }

    /** Stores a touch event in screen pixels, y down. The next frame applies it. */
    public void touch(int action, double x, double y, float pressure) {
        int last = pendingTouches.size() - 1;
        if (action == NativeForVelmora.ACTION_MOVE && last >= 0
            && pendingTouches.get(last).action == action) {
            // The library measures speed as the distance between events. With at most one move per
            // frame, the speed does not depend on how often the display reports touches.
            pendingTouches.remove(last);
        }
        pendingTouches.add(new Touch(action, x, y, pressure));
        restartRain();
        idle.wake();
    }

    /**
     * Lifts the finger when no further touch events will arrive, for example because the screen is
     * hidden.
     */
    public void releaseFinger() {
        Touch last =
            pendingTouches.isEmpty() ? lastTouch : pendingTouches.get(pendingTouches.size() - 1);
        if (last != null && !last.ends()) {
            touch(NativeForVelmora.ACTION_UP, last.x, last.y, last.pressure);
        }
    }

    public void setInk(float red, float green, float blue) {
        effect.inkRed = red;
        effect.inkGreen = green;
        effect.inkBlue = blue;
    }

    public void showSecondBackground(boolean on) {
        effect.useSecondBackground = on;
        idle.wake();
    }

    /** Removes the ink and ends the current gesture. */
    public void clearInk() {
        applyTouches();
        velmora.clearInkValue();
        idle.inkIsGone();
        idle.wake();
    }

    /** Returns true if the next frame may differ from the last frame. */
    public boolean needsFrame() { return water != null && (idle.needsFrame() || rains()); }

    boolean inkEnabled() { return !settings.isOn(Setting.WATER_ONLY); }

    boolean hasSize() { return water != null; }

    boolean setUpIsStale() { return setUpIsStale; }

    boolean texturesAreStale() { return texturesAreStale; }

    void setUpIsDone() { setUpIsStale = false; }

    void texturesAreLoaded() { texturesAreStale = false; }

    /** Returns the background. Loads it at the first call and keeps it for later GL contexts. */
    Bitmap background() {
        background = background == null ? backgrounds.background(width, height) : background;
        return background;
    }

    Bitmap secondBackground() {
        secondBackground = secondBackground == null ? backgrounds.secondBackground(width, height)
                                                    : secondBackground;
        return secondBackground;
    }

    /** Requests a frame, for example because a new surface is empty. */
    public void wake() { idle.wake(); }

    /** Starts the rain again for RAIN_FRAMES frames. Called when the scene is shown. */
    void restartRain() { rainFrames = RAIN_FRAMES; }

    /**
     * Loads the backgrounds if they are missing. This may take long, because it decodes a photo.
     */
    void loadBackgrounds() {
        background();
        secondBackground();
    }

    /** Tells the scene that the library has lost or cleared its ink. */
    void inkIsGone() { idle.inkIsGone(); }

    /** Applies the touches, advances the water by `elapsed` nanoseconds and draws the frame. */
    void frame(long elapsed) {
        long effectTime = (long) (elapsed * (double) settings.get(Setting.TIME_SCALE));
        if (rains()) {
            rain.fall(water, settings.get(Setting.RAIN), effect.downRipple, effectTime);
            --rainFrames;
        }
        applyTouches();
        if (idle.inkHasFaded()) {
            velmora.clearInkValue();
            idle.inkIsGone();
        }
        water.advance(effectTime);
        draw();
        idle.frameDrawn(water.moves());
    }

    private boolean rains() { return settings.get(Setting.RAIN) > 0.0f && rainFrames > 0; }

    private void replaceWater() {
        water = new WaterDriver(velmora, width, height, waterSettings);
        // The centre of the mesh is the origin, and y points up. The mesh is drawn MESH_OVERHANG
        // times as large as the surface.
        mvpMatrix[0] = 2.0f * WaterDriver.MESH_OVERHANG / water.meshSizeWidth;
        mvpMatrix[5] = 2.0f * WaterDriver.MESH_OVERHANG / water.meshSizeHeight;
        mvpMatrix[10] = 1.0f;
        mvpMatrix[15] = 1.0f;
    }

    private void applyTouches() {
        for (Touch touch : pendingTouches) {
            velmora.onTouch(toPixel(touch.x), toPixel(touch.y), touch.action, touch.pressure);
            strikeWater(touch);
            idle.touch(touch.ends(), inkEnabled());
            lastTouch = touch.ends() ? null : touch;
        }
        pendingTouches.clear();
    }

    private void strikeWater(Touch touch) {
        if (touch.action == NativeForVelmora.ACTION_DOWN) {
            water.ripple(touch.x, touch.y, effect.downRipple);
        } else if (touch.action == NativeForVelmora.ACTION_MOVE && lastTouch != null) {
            furrow(lastTouch, touch);
        }
    }

    private void furrow(Touch from, Touch to) {
        double wayX = to.x - from.x;
        double wayY = to.y - from.y;
        double cellSize = (double) width / water.columns;
        double cells = Math.hypot(wayX, wayY) / cellSize;
        double spacing = RIPPLE_SPACING * waterSettings.rippleRadius / WaterSettings.CONE_RADIUS;
        int strikes = (int) Math.min(Math.ceil(cells / spacing), MAX_RIPPLES_AT_ONCE);
        for (int strike = 1; strike <= strikes; ++strike) {
            double part = (double) strike / strikes;
            water.ripple(from.x + wayX * part, from.y + wayY * part, effect.moveRipple);
        }
    }

    /** Rounds to the nearest integer. Halves are rounded away from zero. */
    private static int toPixel(double position) {
        long distance = Math.round(Math.min(Math.abs(position), 1e9));
        return (int) (position < 0 ? -distance : distance);
    }

    private void draw() {
        velmora.onDrawFrame(water.positions, water.heights, water.indices, water.positions.length,
            water.heights.length, water.indices.length, mvpMatrix, water.meshSizeWidth,
            water.meshSizeHeight, water.numDetailsWidth, water.numDetailsHeight,
            effect.refractiveIndex, effect.alpha, effect.alphaRatio1Scale, effect.alphaRatio2Scale,
            effect.inkRed, effect.inkGreen, effect.inkBlue, effect.fresnelRatio,
            effect.specularRatio, effect.exponent, effect.useSecondBackground);
    }
}

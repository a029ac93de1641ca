package javahost;

import com.corvane.android.visualeffect.lock.velmora.NativeForVelmora;

/**
 * A device's host around the library, without its window: sets everything up in the order that the
 * library asks for, then draws frame by frame. Everything runs on one thread.
 */
final class EffectHost implements AutoCloseable {
    private static final int SHEEN_SLOT = 0;
    private static final int BACKGROUND_SLOT = 1;
    private static final int SECOND_BACKGROUND_SLOT = 2;

    private static final float REFRACTIVE_INDEX = 1.33f;
    private static final float ALPHA = 1.0f;
    private static final float ALPHA_RATIO_1_SCALE = 0.1f;
    private static final float ALPHA_RATIO_2_SCALE = 1.0f;
    private static final float FRESNEL_RATIO = 0.8f;
    private static final float SPECULAR_RATIO = 3.0f;
    private static final float EXPONENT = 24.0f;

    private static final float DOWN_RIPPLE = 2.4f;
    private static final float MOVE_RIPPLE = 0.4f;

    /** Moves further apart than this many cells get ripples in between: a fast finger furrows. */
    private static final double RIPPLE_SPACING = 2.0;

    private static final double MOST_RIPPLES_AT_ONCE = 64.0;

    private record Point(double x, double y) {}

    private final NativeForVelmora velmora = new NativeForVelmora();
    private final int width;
    private final int height;
    private final Picture background;
    private final WaterDriver water;
    private final float[] mvpMatrix = new float[16];
    private long context;
    private float inkRed = 0.3f;
    private float inkGreen = 0.7f;
    private float inkBlue = 1.0f;
    private boolean useSecondBackground;
    private Point lastTouch;

    EffectHost(int width, int height, Picture background) {
        this.width = width;
        this.height = height;
        this.background = background;
        velmora.onInitSetting(width, height, true);
        setUpContext();
        water = new WaterDriver(velmora, width, height);
        fillMvpMatrix();
    }

    private void setUpContext() {
        context = HostKit.createContext(width, height);
        velmora.onInitUVHBuffer();
        velmora.onInitGPU();
        loadTexture(Picture.sheen(), SHEEN_SLOT);
        loadTexture(background, BACKGROUND_SLOT);
        loadTexture(Picture.testPicture(height, width), SECOND_BACKGROUND_SLOT);
    }

    private void loadTexture(Picture picture, int slot) {
        int result = velmora.LoadTextures(picture.toBitmap(), slot);
        if (result < 0) {
            throw new HostException("picture " + slot + " was refused with code " + result);
        }
    }

    /**
     * Maps the mesh, which is centred on the origin with y up, onto the surface and a little beyond.
     */
    private void fillMvpMatrix() {
        mvpMatrix[0] = 2.0f * WaterDriver.MESH_OVERHANG / water.meshSizeWidth;
        mvpMatrix[5] = 2.0f * WaterDriver.MESH_OVERHANG / water.meshSizeHeight;
        mvpMatrix[10] = 1.0f;
        mvpMatrix[15] = 1.0f;
    }

    /** One touch event in screen pixels, y down: to the ink, and as a ripple to the water. */
    void touch(int action, double x, double y, float pressure) {
        velmora.onTouch(toPixel(x), toPixel(y), action, pressure);
        if (action == NativeForVelmora.ACTION_DOWN) {
            water.ripple(x, y, DOWN_RIPPLE);
        } else if (action == NativeForVelmora.ACTION_MOVE) {
            furrow(x, y);
        }
        boolean ends =
            action == NativeForVelmora.ACTION_UP || action == NativeForVelmora.ACTION_CANCEL;
        lastTouch = ends ? null : new Point(x, y);
    }

    private void furrow(double x, double y) {
        if (lastTouch == null) {
            return;
        }
        double wayX = x - lastTouch.x;
        double wayY = y - lastTouch.y;
        double cellSize = (double) width / water.columns;
        double cells = Math.hypot(wayX, wayY) / cellSize;
        int strikes = (int) Math.min(Math.ceil(cells / RIPPLE_SPACING), MOST_RIPPLES_AT_ONCE);
        for (int strike = 1; strike <= strikes; ++strike) {
            double way = (double) strike / strikes;
            water.ripple(lastTouch.x + wayX * way, lastTouch.y + wayY * way, MOVE_RIPPLE);
        }
    }

    /** Halves away from zero, on both sides of it. */
    private static int toPixel(double position) {
        long distance = Math.round(Math.min(Math.abs(position), 1e9));
        return (int) (position < 0 ? -distance : distance);
    }

    void setInk(float red, float green, float blue) {
        inkRed = red;
        inkGreen = green;
        inkBlue = blue;
    }

    void showSecondBackground(boolean on) { useSecondBackground = on; }

    void clearInk() { velmora.clearInkValue(); }

    boolean inkShown() { return velmora.getClearInkValue() != 0; }

    /** Destroys the GL context with everything in it and sets up a new one. */
    void loseContext() {
        close();
        setUpContext();
    }

    /** Lets the water run for so many nanoseconds and draws. */
    void frame(long elapsed) {
        water.advance(elapsed);
        velmora.onDrawFrame(water.positions, water.heights, water.indices, water.positions.length,
            water.heights.length, water.indices.length, mvpMatrix, water.meshSizeWidth,
            water.meshSizeHeight, water.numDetailsWidth, water.numDetailsHeight, REFRACTIVE_INDEX,
            ALPHA, ALPHA_RATIO_1_SCALE, ALPHA_RATIO_2_SCALE, inkRed, inkGreen, inkBlue,
            FRESNEL_RATIO, SPECULAR_RATIO, EXPONENT, useSecondBackground);
    }

    Picture picture() { return new Picture(width, height, HostKit.readPixels(context)); }

    @Override
    public void close() {
        HostKit.destroyContext(context);
        context = 0;
    }
}

package velmora.host;

/** Detects that the screen no longer changes. It counts the drawn frames since the last touch. */
final class IdleDetector {
    /** Number of frames for which the library animates a tap. */
    private static final int PRESS_FRAMES = 13;

    /**
     * Number of frames between the end of a tap and the moment when the ink begins to fade faster.
     */
    private static final int FRAMES_BEFORE_FADE = 35;

    /**
     * Number of frames in which the densest ink, 127, fades below 1/255. Each frame has four passes
     * that multiply the ink by 0.9625: ln(127 * 255) / (-4 ln 0.9625) = 67.9.
     */
    private static final int FADE_FRAMES = 68;

    private static final int INK_FRAMES = PRESS_FRAMES + FRAMES_BEFORE_FADE + FADE_FRAMES;

    private int framesSinceTouch;
    private boolean fingerIsDown;
    private boolean inkIsLeft;
    private boolean waterMoves;
    private boolean frameIsOwed = true;

    void touch(boolean endsGesture, boolean inkEnabled) {
        fingerIsDown = !endsGesture;
        inkIsLeft = inkEnabled;
        framesSinceTouch = 0;
        frameIsOwed = true;
    }

    /** Requests a frame, because the next frame may differ from the last frame. */
    void wake() { frameIsOwed = true; }

    /**
     * Returns true if the ink has faded. The host must then clear the ink, because rounding to 8
     * bits leaves a trace that would never fade.
     */
    boolean inkHasFaded() { return inkIsLeft && !fingerIsDown && framesSinceTouch >= INK_FRAMES; }

    /** Tells the detector that the library has lost or cleared its ink. */
    void inkIsGone() { inkIsLeft = false; }

    /** Tells the detector that a gesture ended without an up or cancel event. */
    void fingerIsGone() { fingerIsDown = false; }

    void frameDrawn(boolean waterStillMoves) {
        ++framesSinceTouch;
        waterMoves = waterStillMoves;
        frameIsOwed = false;
    }

    /** Returns true if the next frame may differ from the last frame. */
    boolean needsFrame() { return frameIsOwed || waterMoves || fingerIsDown || inkIsLeft; }
}

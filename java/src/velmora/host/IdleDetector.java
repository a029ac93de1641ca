package velmora.host;

/** Tells when the screen does not change any more, by counting drawn frames. */
final class IdleDetector {
    /** Frames of a tap's animation. */
    private static final int PRESS_FRAMES = 13;

    /** Frames from the end of the animation until the ink begins to fade. */
    private static final int FRAMES_BEFORE_FADE = 35;

    /**
     * Frames in which ink of full density, 127, fades below a 255th. Each frame has four passes that
     * leave 0.9625 of the ink: ln(127 * 255) / (-4 ln 0.9625) = 67.9.
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

    /** Asks for a frame, since something changed. */
    void wake() { frameIsOwed = true; }

    /** Returns true if the ink is to be cleared: its 8-bit targets keep a trace that never fades. */
    boolean inkHasFaded() { return inkIsLeft && !fingerIsDown && framesSinceTouch >= INK_FRAMES; }

    /** Notes that the library holds no ink. */
    void inkIsGone() { inkIsLeft = false; }

    /** Notes that the gesture ended without an event. */
    void fingerIsGone() { fingerIsDown = false; }

    void frameDrawn(boolean waterStillMoves) {
        ++framesSinceTouch;
        waterMoves = waterStillMoves;
        frameIsOwed = false;
    }

    /** Returns true if the next frame may differ from the last. */
    boolean needsFrame() { return frameIsOwed || waterMoves || fingerIsDown || inkIsLeft; }
}

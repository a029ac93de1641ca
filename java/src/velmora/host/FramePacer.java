package velmora.host;

/**
 * Chooses the display's frames in which the effect draws. The ink advances by frames, so that 60
 * frames a second are drawn on a display of any rate. Slow motion draws fewer frames.
 */
public final class FramePacer {
    /** Duration of a frame in nanoseconds. */
    public static final long FRAME_TIME = 16_666_667;

    /** A display's frames arrive up to this many nanoseconds early. */
    private static final long TOLERANCE = 1_000_000;

    private long lastTime;
    private boolean runs;

    /** Elapsed time that no drawn frame covers yet, in nanoseconds of the effect. */
    private long owed;

    /** Forgets the time so far: the next frame of the display is drawn. */
    public void restart() { runs = false; }

    /**
     * Returns true if the display's frame at this time is to be drawn.
     *
     * @param time nanoseconds on any clock
     * @param timeScale seconds of the effect per second
     */
    public boolean isDue(long time, float timeScale) {
        if (!runs) {
            runs = true;
            lastTime = time;
            owed = 0;
            return true;
        }
        owed += (long) ((time - lastTime) * (double) Math.min(timeScale, 1.0f));
        lastTime = time;
        if (owed < FRAME_TIME - TOLERANCE) {
            return false;
        }
        // A late frame is not drawn twice, and early frames save up no more than the tolerance.
        owed = Math.max(-TOLERANCE, Math.min(owed - FRAME_TIME, FRAME_TIME));
        return true;
    }
}

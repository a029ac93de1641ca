package velmora.host;

/**
 * Chooses the display's frames in which the effect draws. The ink advances by one step per frame,
 * so 60 frames per second are drawn on every display. Slow motion draws fewer frames.
 */
public final class FramePacer {
    /** Duration of a frame in nanoseconds. */
    public static final long FRAME_TIME = 16_666_667;

    /** Maximum time by which a frame of the display may come early, in nanoseconds. */
    private static final long TOLERANCE = 1_000_000;

    private long lastTime;
    private boolean runs;

    /** Time of the effect that no drawn frame covers yet, in nanoseconds. */
    private long owed;

    /** Forgets the past, so that the next frame of the display is drawn. */
    public void restart() { runs = false; }

    /**
     * Returns true if the effect must draw in the display's frame at this time.
     *
     * @param time nanoseconds on any clock
     * @param timeScale speed of the effect: 1 is normal, less is slow motion
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
        // Limit the remainder: a late frame must not be drawn twice, and early frames may add up to
        // the tolerance only.
        owed = Math.max(-TOLERANCE, Math.min(owed - FRAME_TIME, FRAME_TIME));
        return true;
    }
}

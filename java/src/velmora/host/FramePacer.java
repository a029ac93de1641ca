package velmora.host;

/**
 * Chooses the display frames in which the effect draws. The ink advances by one step per drawn
 * frame, so the effect draws 60 frames per second on any display, or fewer in slow motion.
 */
public final class FramePacer {
    /** Duration of a frame in nanoseconds. */
    public static final long FRAME_TIME = 16_666_667;

    /**
     * Tolerance in nanoseconds. The effect draws even in a display frame that is early by up to
     * this time.
     */
    private static final long TOLERANCE = 1_000_000;

    private long lastTime;
    private boolean runs;

    /**
     * Time in nanoseconds by which the effect must still advance. A frame is due when this time
     * reaches the duration of a frame.
     */
    private long owed;

    /** Forgets the time of the last frame, so that the effect draws in the next display frame. */
    public void restart() { runs = false; }

    /**
     * Returns true if the effect must draw in the current display frame.
     *
     * @param time nanoseconds on any clock
     * @param timeScale speed of the effect: 1 is normal, lower values are slow motion
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
        // Keep the remaining time between -TOLERANCE and the duration of one frame. After a long
        // delay, at most one extra frame is then due.
        owed = Math.max(-TOLERANCE, Math.min(owed - FRAME_TIME, FRAME_TIME));
        return true;
    }
}

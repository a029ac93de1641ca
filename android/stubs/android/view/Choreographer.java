package android.view;

public final class Choreographer {
    public static Choreographer getInstance() { throw new UnsupportedOperationException(); }
    public void postFrameCallback(FrameCallback callback) {
        throw new UnsupportedOperationException();
    }
    public interface FrameCallback {
        void doFrame(long frameTimeNanos);
    }
}

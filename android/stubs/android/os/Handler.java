package android.os;

public class Handler {
    public Handler(Looper looper) {}
    public final boolean post(Runnable r) { throw new UnsupportedOperationException(); }
}

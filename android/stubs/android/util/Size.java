package android.util;

public final class Size {
    public int getWidth() { throw new UnsupportedOperationException(); }
    public int getHeight() { throw new UnsupportedOperationException(); }
}

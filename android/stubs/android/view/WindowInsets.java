package android.view;

import android.graphics.Insets;

public final class WindowInsets {
    public Insets getInsets(int typeMask) { throw new UnsupportedOperationException(); }
    @Deprecated
    public int getSystemWindowInsetLeft() {
        throw new UnsupportedOperationException();
    }
    @Deprecated
    public int getSystemWindowInsetRight() {
        throw new UnsupportedOperationException();
    }
    @Deprecated
    public int getSystemWindowInsetBottom() {
        throw new UnsupportedOperationException();
    }
    public static final class Type {
        public static int systemBars() { throw new UnsupportedOperationException(); }
        public static int displayCutout() { throw new UnsupportedOperationException(); }
    }
}

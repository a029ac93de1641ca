package android.widget;

import android.content.Context;

public class Toast {
    public static final int LENGTH_LONG = 1;
    public static Toast makeText(Context context, int resId, int duration) {
        throw new UnsupportedOperationException();
    }
    public void show() { throw new UnsupportedOperationException(); }
}

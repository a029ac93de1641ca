package android.content.res;

import android.util.DisplayMetrics;

public class Resources {
    public DisplayMetrics getDisplayMetrics() { throw new UnsupportedOperationException(); }
}

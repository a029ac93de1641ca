package android.view;

import android.os.Parcelable;

public class Surface implements Parcelable {
    public static final int FRAME_RATE_COMPATIBILITY_DEFAULT = 0;
    public boolean isValid() { throw new UnsupportedOperationException(); }
    public void setFrameRate(float frameRate, int compatibility) {
        throw new UnsupportedOperationException();
    }
}

package velmora.host;

import android.graphics.Bitmap;

/** Makes the backgrounds of a screen: software ARGB_8888 bitmaps, opaque and in the screen's shape. */
public interface Backgrounds {
    Bitmap background(int width, int height);

    Bitmap secondBackground(int width, int height);
}

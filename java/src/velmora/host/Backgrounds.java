package velmora.host;

import android.graphics.Bitmap;

/**
 * Provides the two backgrounds of a screen. They are opaque software bitmaps, ARGB_8888, with the
 * aspect ratio of the screen.
 */
public interface Backgrounds {
    Bitmap background(int width, int height);

    Bitmap secondBackground(int width, int height);
}

package velmora.host;

import android.graphics.Bitmap;

/**
 * Provides the backgrounds of a screen: opaque software ARGB_8888 bitmaps with the aspect ratio of
 * the screen.
 */
public interface Backgrounds {
    Bitmap background(int width, int height);

    Bitmap secondBackground(int width, int height);
}

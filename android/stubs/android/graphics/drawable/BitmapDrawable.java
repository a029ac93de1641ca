package android.graphics.drawable;

import android.content.res.Resources;
import android.graphics.Bitmap;

public class BitmapDrawable extends Drawable {
    public BitmapDrawable(Resources res, Bitmap bitmap) {}
}

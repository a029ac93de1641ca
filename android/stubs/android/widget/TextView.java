package android.widget;

import android.content.Context;
import android.graphics.drawable.Drawable;
import android.view.View;

public class TextView extends View {
    public TextView(Context context) { super(context); }
    public final void setText(CharSequence text) { throw new UnsupportedOperationException(); }
    public void setCompoundDrawables(Drawable left, Drawable top, Drawable right, Drawable bottom) {
        throw new UnsupportedOperationException();
    }
}

package android.view;

import android.content.Context;
import android.util.AttributeSet;

public class View {
    @Deprecated public static final int SYSTEM_UI_FLAG_LAYOUT_STABLE = 256;
    @Deprecated public static final int SYSTEM_UI_FLAG_LAYOUT_HIDE_NAVIGATION = 512;
    @Deprecated public static final int SYSTEM_UI_FLAG_LAYOUT_FULLSCREEN = 1024;
    public View(Context context) {}
    public View(Context context, AttributeSet attrs) {}
    public final int getWidth() { throw new UnsupportedOperationException(); }
    public final int getHeight() { throw new UnsupportedOperationException(); }
    public Object getTag() { throw new UnsupportedOperationException(); }
    public void setTag(Object tag) { throw new UnsupportedOperationException(); }
    public void setAlpha(float alpha) { throw new UnsupportedOperationException(); }
    public void setActivated(boolean activated) { throw new UnsupportedOperationException(); }
    public void setFocusable(boolean focusable) { throw new UnsupportedOperationException(); }
    public void setClickable(boolean clickable) { throw new UnsupportedOperationException(); }
    public void setContentDescription(CharSequence contentDescription) {
        throw new UnsupportedOperationException();
    }
    public void setPadding(int left, int top, int right, int bottom) {
        throw new UnsupportedOperationException();
    }
    public void setOnClickListener(OnClickListener l) { throw new UnsupportedOperationException(); }
    public void setOnApplyWindowInsetsListener(OnApplyWindowInsetsListener listener) {
        throw new UnsupportedOperationException();
    }
    @Deprecated
    public void setSystemUiVisibility(int visibility) {
        throw new UnsupportedOperationException();
    }
    public boolean onTouchEvent(MotionEvent event) { throw new UnsupportedOperationException(); }
    public boolean performClick() { throw new UnsupportedOperationException(); }
    protected void onDetachedFromWindow() { throw new UnsupportedOperationException(); }
    public boolean post(Runnable action) { throw new UnsupportedOperationException(); }
    public interface OnClickListener {
        void onClick(View v);
    }
    public interface OnApplyWindowInsetsListener {
        WindowInsets onApplyWindowInsets(View v, WindowInsets insets);
    }
}

package android.view;

import android.content.Context;

public abstract class ViewGroup extends View {
    public ViewGroup(Context context) { super(context); }
    public void addView(View child) { throw new UnsupportedOperationException(); }
    public View getChildAt(int index) { throw new UnsupportedOperationException(); }
    public int getChildCount() { throw new UnsupportedOperationException(); }
}

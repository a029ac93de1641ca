package android.view;

import android.content.Context;

public abstract class LayoutInflater {
    public static LayoutInflater from(Context context) {
        throw new UnsupportedOperationException();
    }
    public View inflate(int resource, ViewGroup root, boolean attachToRoot) {
        throw new UnsupportedOperationException();
    }
}

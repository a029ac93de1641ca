package android.content;

import android.net.Uri;
import android.os.Parcelable;

public class Intent implements Parcelable {
    public static final String ACTION_OPEN_DOCUMENT = "android.intent.action.OPEN_DOCUMENT";
    public static final String ACTION_SEND = "android.intent.action.SEND";
    public static final String CATEGORY_OPENABLE = "android.intent.category.OPENABLE";
    public static final String EXTRA_STREAM = "android.intent.extra.STREAM";
    public static final int FLAG_GRANT_READ_URI_PERMISSION = 1;
    public Intent(String action) {}
    public Uri getData() { throw new UnsupportedOperationException(); }
    public Intent setType(String type) { throw new UnsupportedOperationException(); }
    public Intent addCategory(String category) { throw new UnsupportedOperationException(); }
    public Intent addFlags(int flags) { throw new UnsupportedOperationException(); }
    public Intent putExtra(String name, Parcelable value) {
        throw new UnsupportedOperationException();
    }
    public void setClipData(ClipData clip) { throw new UnsupportedOperationException(); }
    public static Intent createChooser(Intent target, CharSequence title) {
        throw new UnsupportedOperationException();
    }
}

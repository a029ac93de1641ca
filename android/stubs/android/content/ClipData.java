package android.content;

import android.net.Uri;

public class ClipData {
    public static ClipData newRawUri(CharSequence label, Uri uri) {
        throw new UnsupportedOperationException();
    }
}

package android.net;

import android.os.Parcelable;

public abstract class Uri implements Parcelable {
    public static Uri parse(String uriString) { throw new UnsupportedOperationException(); }
    public abstract String getPath();
    public abstract String toString();
}

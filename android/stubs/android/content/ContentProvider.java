package android.content;

import android.database.Cursor;
import android.net.Uri;
import android.os.ParcelFileDescriptor;
import java.io.FileNotFoundException;

public abstract class ContentProvider {
    public ContentProvider() {}
    public final Context getContext() { throw new UnsupportedOperationException(); }
    public abstract boolean onCreate();
    public abstract String getType(Uri uri);
    public ParcelFileDescriptor openFile(Uri uri, String mode) throws FileNotFoundException {
        throw new UnsupportedOperationException();
    }
    public abstract Cursor query(
        Uri uri, String[] projection, String selection, String[] selectionArgs, String sortOrder);
    public abstract Uri insert(Uri uri, ContentValues values);
    public abstract int update(
        Uri uri, ContentValues values, String selection, String[] selectionArgs);
    public abstract int delete(Uri uri, String selection, String[] selectionArgs);
}

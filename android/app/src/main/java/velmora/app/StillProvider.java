package velmora.app;

import android.content.ContentProvider;
import android.content.ContentValues;
import android.content.Context;
import android.database.Cursor;
import android.database.MatrixCursor;
import android.net.Uri;
import android.os.ParcelFileDescriptor;
import android.provider.OpenableColumns;
import java.io.File;
import java.io.FileNotFoundException;

/** Hands the still to the app that the user shares it with, and nothing else. */
public final class StillProvider extends ContentProvider {
    private static final String NAME = "velmora.png";

    /** Returns the file that a new still replaces. */
    static File file(Context context) { return new File(context.getCacheDir(), NAME); }

    static Uri uri(Context context) {
        return Uri.parse("content://" + context.getPackageName() + ".stills/" + NAME);
    }

    @Override
    public boolean onCreate() {
        return true;
    }

    @Override
    public String getType(Uri uri) {
        return "image/png";
    }

    @Override
    public ParcelFileDescriptor openFile(Uri uri, String mode) throws FileNotFoundException {
        if (!uri.equals(uri(getContext()))) {
            throw new FileNotFoundException("expected " + uri(getContext()) + ", not " + uri);
        }
        return ParcelFileDescriptor.open(file(getContext()), ParcelFileDescriptor.MODE_READ_ONLY);
    }

    @Override
    public Cursor query(
        Uri uri, String[] columns, String selection, String[] arguments, String order) {
        MatrixCursor answer =
            new MatrixCursor(new String[] {OpenableColumns.DISPLAY_NAME, OpenableColumns.SIZE});
        answer.addRow(new Object[] {NAME, file(getContext()).length()});
        return answer;
    }

    @Override
    public Uri insert(Uri uri, ContentValues values) {
        throw new UnsupportedOperationException("stills are read only");
    }

    @Override
    public int update(Uri uri, ContentValues values, String selection, String[] arguments) {
        throw new UnsupportedOperationException("stills are read only");
    }

    @Override
    public int delete(Uri uri, String selection, String[] arguments) {
        throw new UnsupportedOperationException("stills are read only");
    }
}

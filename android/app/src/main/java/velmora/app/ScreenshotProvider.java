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

/**
 * Gives other apps read access to screenshots that the user shares with these apps. They cannot
 * read any other file of this app.
 */
public final class ScreenshotProvider extends ContentProvider {
    private static final String FOLDER = "screenshots";

    /**
     * Returns a file for a new screenshot. Its name is unique, because the receiving app may read
     * the file much later. The file is in the cache folder, which the system cleans up.
     */
    static File newFile(Context context) {
        File folder = folder(context);
        folder.mkdirs();
        return new File(folder, "velmora-" + System.currentTimeMillis() + ".png");
    }

    static Uri uri(Context context, File screenshot) {
        return Uri.parse(
            "content://" + context.getPackageName() + ".screenshots/" + screenshot.getName());
    }

    private static File folder(Context context) { return new File(context.getCacheDir(), FOLDER); }

    /**
     * Returns the file for a content URI. Uses only the last path segment, so an app cannot reach
     * other folders.
     */
    private File screenshot(Uri uri) {
        return new File(folder(getContext()), new File(uri.getPath()).getName());
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
        return ParcelFileDescriptor.open(screenshot(uri), ParcelFileDescriptor.MODE_READ_ONLY);
    }

    @Override
    public Cursor query(
        Uri uri, String[] columns, String selection, String[] arguments, String order) {
        File screenshot = screenshot(uri);
        String[] asked = columns == null
            ? new String[] {OpenableColumns.DISPLAY_NAME, OpenableColumns.SIZE}
            : columns;
        Object[] row = new Object[asked.length];
        for (int at = 0; at < asked.length; ++at) {
            if (OpenableColumns.DISPLAY_NAME.equals(asked[at])) {
                row[at] = screenshot.getName();
            } else if (OpenableColumns.SIZE.equals(asked[at])) {
                row[at] = screenshot.length();
            }
        }
        MatrixCursor answer = new MatrixCursor(asked);
        answer.addRow(row);
        return answer;
    }

    @Override
    public Uri insert(Uri uri, ContentValues values) {
        throw new UnsupportedOperationException("screenshots are read-only");
    }

    @Override
    public int update(Uri uri, ContentValues values, String selection, String[] arguments) {
        throw new UnsupportedOperationException("screenshots are read-only");
    }

    @Override
    public int delete(Uri uri, String selection, String[] arguments) {
        throw new UnsupportedOperationException("screenshots are read-only");
    }
}

package android.os;

import java.io.File;
import java.io.FileNotFoundException;

public class ParcelFileDescriptor implements Parcelable {
    public static final int MODE_READ_ONLY = 268435456;
    public static ParcelFileDescriptor open(File file, int mode) throws FileNotFoundException {
        throw new UnsupportedOperationException();
    }
}

package javahost;

import android.graphics.Bitmap;
import com.corvane.android.visualeffect.lock.velmora.NativeForVelmora;

/** Passes valid and invalid bitmaps to LoadTextures, and prints each result. */
final class BitmapCases {
    private BitmapCases() {}

    public static void main(String[] arguments) {
        NativeForVelmora library = new NativeForVelmora();
        long context = HostKit.createContext(16, 16);
        Bitmap good = Bitmap.createBitmap(2, 3, Bitmap.Config.ARGB_8888);
        Bitmap recycled = Bitmap.createBitmap(2, 3, Bitmap.Config.ARGB_8888);
        recycled.recycle();
        print("two by three", library.LoadTextures(good, 1));
        print("no such slot", library.LoadTextures(good, 3));
        print("null", library.LoadTextures(null, 1));
        print("RGB_565", library.LoadTextures(Bitmap.createBitmap(2, 3, Bitmap.Config.RGB_565), 1));
        print("recycled", library.LoadTextures(recycled, 1));
        HostKit.destroyContext(context);
    }

    private static void print(String bitmap, int result) {
        System.out.println(bitmap + ": " + result);
    }
}

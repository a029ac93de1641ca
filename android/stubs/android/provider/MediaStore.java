package android.provider;

public final class MediaStore {
    public static final String ACTION_PICK_IMAGES = "android.provider.action.PICK_IMAGES";
}

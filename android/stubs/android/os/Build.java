package android.os;

public class Build {
    public static class VERSION { public static final int SDK_INT = Integer.parseInt("36"); }
    public static class VERSION_CODES {
        public static final int P = 28;
        public static final int R = 30;
    }
}

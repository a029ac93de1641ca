package android.view;

public abstract class Window {
    public abstract View getDecorView();
    @Deprecated
    public void setDecorFitsSystemWindows(boolean decorFitsSystemWindows) {
        throw new UnsupportedOperationException();
    }
}

package android.app;

import android.content.Intent;
import android.os.Bundle;
import android.view.ContextThemeWrapper;
import android.view.View;
import android.view.Window;

public class Activity extends ContextThemeWrapper {
    public static final int RESULT_OK = -1;
    public Activity() {}
    protected void onCreate(Bundle savedInstanceState) {
        throw new UnsupportedOperationException();
    }
    protected void onStart() { throw new UnsupportedOperationException(); }
    protected void onResume() { throw new UnsupportedOperationException(); }
    protected void onPause() { throw new UnsupportedOperationException(); }
    protected void onDestroy() { throw new UnsupportedOperationException(); }
    protected void onActivityResult(int requestCode, int resultCode, Intent data) {
        throw new UnsupportedOperationException();
    }
    public void setContentView(int layoutResID) { throw new UnsupportedOperationException(); }
    public <T extends View> T findViewById(int id) { throw new UnsupportedOperationException(); }
    public Window getWindow() { throw new UnsupportedOperationException(); }
    public void startActivityForResult(Intent intent, int requestCode) {
        throw new UnsupportedOperationException();
    }
    public final void runOnUiThread(Runnable action) { throw new UnsupportedOperationException(); }
}

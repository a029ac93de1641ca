package android.app;

import android.content.ContextWrapper;

public abstract class Service extends ContextWrapper {
    public Service() { super(null); }
}

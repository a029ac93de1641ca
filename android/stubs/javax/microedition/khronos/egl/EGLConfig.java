package javax.microedition.khronos.egl;

public abstract class EGLConfig {}

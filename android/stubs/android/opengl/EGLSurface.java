package android.opengl;

public class EGLSurface {}

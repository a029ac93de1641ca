package android.opengl;

public class EGLConfig {}

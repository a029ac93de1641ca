package javax.microedition.khronos.opengles;

public interface GL10 extends GL {}

package velmora.host;

/**
 * Arguments of onDrawFrame that decide how the water looks, and the strength of a touch's ripples.
 */
public final class EffectSettings {
    /** Refractive index: 1 does not bend the background, 1.33 is water. */
    public float refractiveIndex = 1.33f;

    /** Weight of the reflection map on waves, multiplied by alphaRatio1Scale. */
    public float alpha = 1.0f;

    public float alphaRatio1Scale = 0.1f;

    /** Has no effect. */
    public float alphaRatio2Scale = 1.0f;

    /** Extra reflection on slopes that face the light, which is at the lower right. */
    public float fresnelRatio = 0.8f;

    /** Peak of the highlight, as a factor of the reflection. */
    public float specularRatio = 3.0f;

    /** Sharpness of the highlight: 1 is broad, 24 is narrow. */
    public float exponent = 24.0f;

    /** Ink colour, each channel from 0 to 1. */
    public float inkRed = 0.3f;

    public float inkGreen = 0.7f;
    public float inkBlue = 1.0f;

    public boolean useSecondBackground;

    /** Strength of the ripple when a finger goes down. */
    public float downRipple = 2.4f;

    /** Strength of each ripple while a finger moves. */
    public float moveRipple = 0.4f;
}

package velmora.host;

/** Arguments of each frame that shape the drawn water, and the strength of touches on the water. */
public final class EffectSettings {
    /** 1 does not bend the background; 1.33 is water. */
    public float refractiveIndex = 1.33f;

    /** The product of alpha and alphaRatio1Scale is the weight of the reflection map on waves. */
    public float alpha = 1.0f;

    public float alphaRatio1Scale = 0.1f;

    /** Has no visible effect. */
    public float alphaRatio2Scale = 1.0f;

    /** Extra reflection on slopes that face the light at the lower right. */
    public float fresnelRatio = 0.8f;

    /** Peak of the highlight, as a factor of the reflection. */
    public float specularRatio = 3.0f;

    /** Sharpness of the highlight. */
    public float exponent = 24.0f;

    /** Ink colour, each channel from 0 to 1. */
    public float inkRed = 0.3f;

    public float inkGreen = 0.7f;
    public float inkBlue = 1.0f;

    public boolean useSecondBackground;

    /** Strength of the ripple of a touch that goes down. */
    public float downRipple = 2.4f;

    /** Strength of each ripple along a move. */
    public float moveRipple = 0.4f;
}

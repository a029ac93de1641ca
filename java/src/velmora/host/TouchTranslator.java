package velmora.host;

import com.corvane.android.visualeffect.lock.velmora.NativeForVelmora;

/**
 * Translates the platform's touch events into those of one finger. The library knows the actions 0
 * to 3 only, and any other code would move its touch.
 */
public final class TouchTranslator {
    /** The event says nothing about the first finger. */
    public static final int IGNORED = -1;

    /** The platform's code for a finger that leaves while another one stays. */
    private static final int POINTER_UP = 6;

    private int firstPointer;
    private boolean isDown;

    /**
     * Returns the library's action for an event, or IGNORED. The gesture ends when the first finger
     * leaves the screen, also while another finger stays.
     *
     * @param action the platform's masked action
     * @param pointer the id of the pointer at the event's action index
     */
    public int translate(int action, int pointer) {
        if (action == NativeForVelmora.ACTION_DOWN) {
            firstPointer = pointer;
            isDown = true;
            return action;
        }
        boolean leaves = action == POINTER_UP && pointer == firstPointer;
        int translated = leaves ? NativeForVelmora.ACTION_UP : action;
        if (!isDown || translated > NativeForVelmora.ACTION_CANCEL) {
            return IGNORED;
        }
        isDown = translated == NativeForVelmora.ACTION_MOVE;
        return translated;
    }

    /** Returns the id of the pointer whose position belongs to the last translated action. */
    public int pointer() { return firstPointer; }

    /** Returns the pressure of a touch. Devices that do not measure pressure report exactly 1. */
    public static float pressure(float reported, Settings settings) {
        return reported == 1.0f ? settings.get(Setting.PRESSURE) : reported;
    }
}

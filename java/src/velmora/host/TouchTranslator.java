package velmora.host;

import com.corvane.android.visualeffect.lock.velmora.NativeForVelmora;

/**
 * Translates Android's touch events into events of one finger. The library knows only the actions 0
 * to 3; for any other code it would still move the touch.
 */
public final class TouchTranslator {
    /** Result for an event that does not concern the first finger. */
    public static final int IGNORED = -1;

    /** Android's action code for a finger that leaves while another one stays. */
    private static final int POINTER_UP = 6;

    private int firstPointer;
    private boolean isDown;

    /**
     * Returns the library's action for an event, or IGNORED. The gesture ends when the first finger
     * leaves the screen, even if another finger stays.
     *
     * @param action the masked action of the MotionEvent
     * @param pointer the id of the pointer at the action index of the MotionEvent
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

    /**
     * Returns the pressure to use. Devices that cannot measure pressure report 1; the setting
     * replaces it.
     */
    public static float pressure(float reported, Settings settings) {
        return reported == 1.0f ? settings.get(Setting.PRESSURE) : reported;
    }
}

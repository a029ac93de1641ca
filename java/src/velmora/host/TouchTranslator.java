package velmora.host;

import com.corvane.android.visualeffect.lock.velmora.NativeForVelmora;

/**
 * Translates Android's touch events into events of one finger. The library expects only the actions
 * 0 to 3. It would move the touch to the position of any other event, so this class filters out all
 * other actions.
 */
public final class TouchTranslator {
    /** Result for an event that the library must not receive, for example of a second finger. */
    public static final int IGNORED = -1;

    /** Android's action code for a finger that is lifted while another finger stays down. */
    private static final int POINTER_UP = 6;

    private int firstPointer;
    private boolean isDown;

    /**
     * Returns the library's action for an event, or IGNORED. The gesture ends when the first finger
     * is lifted, even if another finger stays down.
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

    /**
     * Returns the id of the first finger. The caller passes this finger's position to the library
     * with each translated action.
     */
    public int pointer() { return firstPointer; }

    /**
     * Returns the pressure to pass to the library. Devices that cannot measure pressure report 1.
     * For a reported pressure of 1, this method therefore returns the pressure of the settings.
     */
    public static float pressure(float reported, Settings settings) {
        return reported == 1.0f ? settings.get(Setting.PRESSURE) : reported;
    }
}

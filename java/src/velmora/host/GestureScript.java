package velmora.host;

import com.corvane.android.visualeffect.lock.velmora.NativeForVelmora;
import java.util.ArrayList;
import java.util.List;
import java.util.function.Consumer;

/**
 * A gesture script for a screen of a given size: the events of each frame. docs/gesture-scripts.md
 * describes the text format.
 */
public final class GestureScript {
    /** Receives the events of a script. */
    public interface Target {
        /** Handles one touch event in screen pixels, y down. */
        void touch(int action, double x, double y, float pressure);

        void setInk(float red, float green, float blue);

        void showSecondBackground(boolean on);

        void clearInk();

        void loseContext();
    }

    private static final class Event {
        final int frame;
        final Consumer<Target> action;

        Event(int frame, Consumer<Target> action) {
            this.frame = frame;
            this.action = action;
        }
    }

    private static final int LARGEST_NUMBER = 1_000_000;
    private static final int FRAMES_AFTER_LAST_EVENT = 60;

    /** Events, sorted by frame number. The first frame is 0. */
    private final List<Event> events = new ArrayList<>();

    private final int width;
    private final int height;
    private int scriptWidth = 1080;
    private int scriptHeight = 1920;

    /** Number of frames that the header `frames` gives, or 0 if the script has no such header. */
    private int frames;

    private GestureScript(int width, int height) {
        this.width = width;
        this.height = height;
    }

    /**
     * Parses a script. Throws HostException "NAME:LINE: expected ..." at the first invalid line.
     */
    public static GestureScript parse(String text, String name, int width, int height) {
        GestureScript script = new GestureScript(width, height);
        String[] lines = text.replaceFirst("^\uFEFF", "").split("\n", -1);
        for (int number = 1; number <= lines.length; ++number) {
            try {
                script.readLine(new Words(lines[number - 1].replaceFirst("#.*", "")));
            } catch (HostException error) {
                throw new HostException(name + ":" + number + ": " + error.getMessage());
            }
        }
        return script;
    }

    /** Returns the number of frames to play. */
    public int frames() { return frames > 0 ? frames : lastEventFrame() + FRAMES_AFTER_LAST_EVENT; }

    public void applyFrame(int frame, Target target) {
        for (Event event : events) {
            if (event.frame == frame) {
                event.action.accept(target);
            }
        }
    }

    private int lastEventFrame() {
        return events.isEmpty() ? 0 : events.get(events.size() - 1).frame;
    }

    private void readLine(Words words) {
        if (words.atEnd()) {
            return;
        }
        if (words.peek().equals("screen")) {
            beginHeader(words);
            scriptWidth = words.integer(1, LARGEST_NUMBER, "a width in pixels");
            scriptHeight = words.integer(1, LARGEST_NUMBER, "a height in pixels");
        } else if (words.peek().equals("frames")) {
            beginHeader(words);
            frames = words.integer(1, LARGEST_NUMBER, "a number of frames, at least 1");
        } else {
            int earliest = lastEventFrame();
            String expected = "a frame number, " + earliest + " or later";
            int frame = words.integer(earliest, LARGEST_NUMBER, expected);
            events.add(new Event(frame, readAction(words)));
        }
        words.end();
    }

    private void beginHeader(Words words) {
        String name = words.next();
        if (!events.isEmpty()) {
            throw Words.unexpected("an event (headers must come before the first event)", name);
        }
    }

    private Consumer<Target> readAction(Words words) {
        String name = words.next();
        switch (name) {
            case "down":
                return readTouch(NativeForVelmora.ACTION_DOWN, words);
            case "move":
                return readTouch(NativeForVelmora.ACTION_MOVE, words);
            case "up":
                return readTouch(NativeForVelmora.ACTION_UP, words);
            case "cancel":
                return readTouch(NativeForVelmora.ACTION_CANCEL, words);
            case "ink":
                return readInk(words);
            case "second":
                return readSecondBackground(words);
            case "clear":
                return Target::clearInk;
            case "lose-context":
                return Target::loseContext;
            default:
                throw Words.unexpected(
                    "down, move, up, cancel, ink, second, clear or lose-context", name);
        }
    }

    private Consumer<Target> readTouch(int action, Words words) {
        double x = position(words, "x") * ((double) width / scriptWidth);
        double y = position(words, "y") * ((double) height / scriptHeight);
        float pressure = words.number(Float::valueOf, 0.0f, 1e6f, "a pressure of 0 or more");
        return target -> target.touch(action, x, y, pressure);
    }

    private static double position(Words words, String axis) {
        double max = LARGEST_NUMBER;
        return words.number(Double::valueOf, -max, max, axis + " in pixels");
    }

    private static Consumer<Target> readInk(Words words) {
        float red = words.number(Float::valueOf, 0.0f, 1.0f, "red from 0 to 1");
        float green = words.number(Float::valueOf, 0.0f, 1.0f, "green from 0 to 1");
        float blue = words.number(Float::valueOf, 0.0f, 1.0f, "blue from 0 to 1");
        return target -> target.setInk(red, green, blue);
    }

    private static Consumer<Target> readSecondBackground(Words words) {
        String name = words.next();
        if (!name.equals("on") && !name.equals("off")) {
            throw Words.unexpected("on or off", name);
        }
        boolean on = name.equals("on");
        return target -> target.showSecondBackground(on);
    }
}

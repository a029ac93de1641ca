package javahost;

import android.graphics.Bitmap;
import com.corvane.android.visualeffect.lock.velmora.NativeForVelmora;
import com.sun.management.ThreadMXBean;
import java.io.ByteArrayInputStream;
import java.io.File;
import java.io.IOException;
import java.io.UncheckedIOException;
import java.lang.management.ManagementFactory;
import java.nio.file.Files;
import java.nio.file.Path;
import java.util.Arrays;
import javax.imageio.ImageIO;
import velmora.host.Backgrounds;
import velmora.host.EffectRenderer;
import velmora.host.EffectScene;
import velmora.host.EffectStage;
import velmora.host.FramePacer;
import velmora.host.GesturePlayer;
import velmora.host.GestureScript;
import velmora.host.Preset;
import velmora.host.ReflectionMap;
import velmora.host.SceneTarget;
import velmora.host.Setting;
import velmora.host.Settings;
import velmora.host.SettingsStore;
import velmora.host.TouchTranslator;

/**
 * Plays the events that a host receives on a device, and prints digests of the screen. The
 * arguments are the name of the case and a gesture script.
 */
final class LifecycleCases {
    private static final int WIDTH = 180;
    private static final int HEIGHT = 320;

    /** Maximum number of frames until the screen must be idle. Each case needs fewer frames. */
    private static final int MAX_FRAMES = 2000;

    private final NativeForVelmora velmora = new NativeForVelmora();
    private final EffectRenderer renderer = new EffectRenderer(velmora, ReflectionMap.makeBitmap());
    private final EffectStage stage = new EffectStage(renderer);
    private final String script;
    private int photo = 1;
    private int photosMade;
    private long time;
    private int frames;

    private LifecycleCases(String script) { this.script = script; }

    public static void main(String[] arguments) throws IOException {
        LifecycleCases cases = new LifecycleCases(Files.readString(Path.of(arguments[1])));
        switch (arguments[0]) {
            case "surfaces":
                cases.surfaces();
                break;
            case "engines":
                cases.engines();
                break;
            case "fingers":
                cases.fingers();
                break;
            case "rates":
                cases.rates();
                break;
            case "settings":
                cases.settings();
                break;
            case "table":
                table();
                break;
            case "store":
                store(new File(arguments[2]));
                break;
            case "idle":
                cases.idle();
                break;
            case "rain":
                cases.rain(Long.parseLong(arguments[2]), Long.parseLong(arguments[3]));
                break;
            case "losses":
                cases.losses();
                break;
            case "player":
                cases.player();
                break;
            case "rain ends":
                cases.rainEnds();
                break;
            default:
                cases.presets(arguments);
        }
    }

    /** A scene with an off-screen surface, which replaces the window of a device. */
    private final class Window implements EffectStage.Screen {
        final EffectScene scene = new EffectScene(velmora, new Photos());
        final GestureScript.Target target = new SceneTarget(scene) {
            @Override
            public void touch(int action, double x, double y, float pressure) {
                stage.touch(scene, action, x, y, pressure);
            }

            @Override
            public void loseContext() {
                isLost = true;
            }
        };
        private int width;
        private int height;
        private long surface;
        private boolean isLost;
        private boolean losesFrame;

        /**
         * Does what a host does in Android's callback surfaceChanged: creates a new surface for the
         * current context and resizes the scene.
         */
        void changeSurface(int newWidth, int newHeight) {
            width = newWidth;
            height = newHeight;
            surface = HostKit.createSurface(width, height);
            scene.resize(width, height);
        }

        Window show() {
            stage.show(scene, this);
            return this;
        }

        /**
         * Plays `count` frames of the stroke on a 60 Hz display, starting at frame `from` of the
         * script.
         */
        void play(int from, int count) {
            GestureScript stroke = GestureScript.parse(script, "stroke", width, height);
            for (int frame = from; frame < from + count; ++frame) {
                stroke.applyFrame(frame, target);
                stage.frame(time += FramePacer.FRAME_TIME);
            }
        }

        void print(String name) {
            HostKit.useSurface(surface);
            System.out.println(name + " " + digest(HostKit.readScreen(width, height)));
        }

        @Override
        public boolean makeCurrent() {
            if (!isLost) {
                HostKit.useSurface(surface);
            }
            return !isLost;
        }

        @Override
        public boolean present() {
            isLost = losesFrame;
            losesFrame = false;
            frames += isLost ? 0 : 1;
            return !isLost;
        }

        @Override
        public void discardLost() {
            HostKit.createContext(1, 1);
            renderer.contextCreated();
            surface = HostKit.createSurface(width, height);
            isLost = false;
        }
    }

    private final class Photos implements Backgrounds {
        @Override
        public Bitmap background(int width, int height) {
            if (Thread.holdsLock(EffectRenderer.class)) {
                throw new AssertionError(
                    "load backgrounds outside the lock, because the UI thread waits for the lock");
            }
            ++photosMade;
            return RgbaImage.testImage(width, photo * height).toBitmap();
        }

        @Override
        public Bitmap secondBackground(int width, int height) {
            return RgbaImage.testImage(height, width).toBitmap();
        }
    }

    private Window newWindow(int width, int height) {
        if (time == 0) {
            HostKit.createContext(1, 1);
        }
        Window window = new Window();
        window.changeSurface(width, height);
        return window;
    }

    /**
     * Pauses and resumes with the old context and with a lost context. Also rotates the screen, and
     * changes the photo during a pause.
     */
    private void surfaces() {
        HostKit.createContext(1, 1);
        Window window = new Window().show();
        window.scene.resize(0, HEIGHT);
        System.out.println("drawn without a size " + renderer.drawFrame(window.scene, 0));
        window.changeSurface(WIDTH, HEIGHT);
        window.play(0, 20);
        window.print("first");
        stage.hide(window.scene);
        window.changeSurface(WIDTH, HEIGHT);
        window.show().play(20, 4);
        window.print("resumed");
        int objects = HostKit.countObjects();
        window.changeSurface(HEIGHT, WIDTH);
        window.play(0, 20);
        window.print("rotated");
        System.out.println("more objects " + (HostKit.countObjects() - objects));
        stage.hide(window.scene);
        window.target.loseContext();
        window.show().play(20, 4);
        window.print("context lost");
        stage.hide(window.scene);
        photo = 2;
        window.scene.replaceBackgrounds();
        window.show().play(24, 4);
        window.print("photo changed");
        System.out.println("photos made " + photosMade);
    }

    /** Shows the home screen, then a preview in front of it, then the home screen again. */
    private void engines() {
        Window home = newWindow(WIDTH, HEIGHT).show();
        home.play(0, 8);
        home.print("home");
        Window preview = newWindow(120, 200).show();
        home.target.touch(NativeForVelmora.ACTION_MOVE, 10, 10, 1.0f);
        preview.play(0, 20);
        preview.print("preview");
        home.print("home behind");
        stage.hide(preview.scene);
        home.play(0, 20);
        home.print("home again");
        EffectRenderer other = new EffectRenderer(velmora, ReflectionMap.makeBitmap());
        other.activate();
        home.scene.wake();
        System.out.println("drawn while another renderer is active: "
            + stage.frame(time += FramePacer.FRAME_TIME));
        HostKit.useSurface(preview.surface);
        other.drawFrame(preview.scene, time);
        renderer.activate();
        home.play(20, 1);
        home.print("drawn after the renderer is active again");
    }

    /**
     * Puts down a second finger, lifts the first finger, then moves and lifts the second finger.
     * Then taps.
     */
    private void fingers() {
        int[][] events = {{0, 0, 0, 40, 90}, {2, 0, 0, 60, 110}, {2, 0, 0, 90, 120},
            {5, 1, 0, 90, 120}, {2, 0, 0, 110, 150}, {6, 0, 0, 114, 152}, {2, 1, 1, 30, 260},
            {2, 1, 1, 150, 300}, {1, 1, 1, 150, 300}, {0, 0, 0, 60, 240}, {5, 1, 0, 60, 240},
            {6, 1, 0, 60, 240}, {3, 0, 0, 60, 240}, {0, 4, 4, 100, 60}, {1, 4, 4, 100, 60}};
        Window window = newWindow(WIDTH, HEIGHT).show();
        TouchTranslator translator = new TouchTranslator();
        Settings settings = new Settings();
        settings.set(Setting.PRESSURE, 0.6f);
        for (int[] event : events) {
            int action = translator.translate(event[0], event[1]);
            if (action != TouchTranslator.IGNORED) {
                float reported = event[1] == 4 ? 0.3f : 1.0f;
                float pressure = TouchTranslator.pressure(reported, settings);
                window.target.touch(action, event[3], event[4], pressure);
            }
            window.play(100, 2);
        }
        window.print("fingers");
        System.out.println("pressure " + TouchTranslator.pressure(1.0f, settings) + " "
            + TouchTranslator.pressure(0.3f, settings));
        window.target.touch(NativeForVelmora.ACTION_DOWN, 100, 60, 0.6f);
        ThreadMXBean thread = (ThreadMXBean) ManagementFactory.getThreadMXBean();
        long bytes = thread.getCurrentThreadAllocatedBytes();
        for (int frame = 0; frame < 20; ++frame) {
            stage.frame(time += FramePacer.FRAME_TIME);
        }
        bytes = thread.getCurrentThreadAllocatedBytes() - bytes;
        System.out.println("20 frames allocate less than 20 KB " + (bytes < 20 * 1024));
    }

    /**
     * Plays the stroke on a 120 Hz display, which reports 120 touches per second. Also counts the
     * frames that are drawn on displays of other rates.
     */
    private void rates() {
        Window window = newWindow(WIDTH, HEIGHT).show();
        GestureScript stroke = GestureScript.parse(script, "stroke", WIDTH, HEIGHT);
        Halfway halfway = new Halfway(window);
        for (int tick = 0; tick < 60; ++tick) {
            halfway.isHalf = tick % 2 == 1;
            stroke.applyFrame((tick + 1) / 2, halfway);
            stage.frame(time = tick * 1_000_000_000L / 120);
        }
        window.print("120 Hz, " + frames);
        for (int rate : new int[] {60, 75, 90, 120, 144, 240}) {
            FramePacer pacer = new FramePacer();
            int drawn = 0;
            for (int tick = 0; tick < 10 * rate; ++tick) {
                drawn += pacer.isDue(tick * 1_000_000_000L / rate, 1.0f) ? 1 : 0;
            }
            System.out.println(rate + " Hz, " + drawn);
        }
    }

    /**
     * Adds a move event halfway between two positions. A display with twice the frame rate would
     * report such events.
     */
    private static final class Halfway extends SceneTarget {
        boolean isHalf;
        private final GestureScript.Target target;
        private double lastX;
        private double lastY;

        Halfway(Window window) {
            super(window.scene);
            target = window.target;
        }

        @Override
        public void touch(int action, double x, double y, float pressure) {
            if (!isHalf) {
                target.touch(action, x, y, pressure);
                lastX = x;
                lastY = y;
            } else if (action == NativeForVelmora.ACTION_MOVE) {
                target.touch(action, (lastX + x) / 2, (lastY + y) / 2, pressure);
            }
        }
    }

    /**
     * Checks that drawing stops some time after a touch, even if the screen is hidden before the up
     * event.
     */
    private void idle() {
        Window window = newWindow(WIDTH / 2, HEIGHT / 2).show();
        Settings coarse = new Settings();
        coarse.set(Setting.MESH_DETAIL, 24);
        window.scene.setSettings(coarse);
        window.play(0, 13);
        stage.hide(window.scene);
        window.show();
        drawUntilIdle();
        window.print("idle after " + frames);
        window.play(14, 100);
        System.out.println("frames while idle " + frames);
        window.play(0, 10);
        stage.hide(newWindow(WIDTH, HEIGHT).show().scene);
        drawUntilIdle();
        window.print("idle again after " + frames);
        Window preview = newWindow(WIDTH, HEIGHT).show();
        drawUntilIdle();
        frames = 0;
        stage.drawNow(window.scene, window, time);
        System.out.println("frames behind the preview " + frames);
        stage.hide(preview.scene);
        drawUntilIdle();
        window.print("frames after the preview " + frames);
        window.play(0, 14);
        window.changeSurface(WIDTH, HEIGHT / 2);
        frames = 0;
        drawUntilIdle();
        System.out.println("frames after a rotation " + frames);
        stage.hide(window.scene);
        stage.drawNow(window.scene, window, time);
        System.out.println("frames while nothing is shown " + frames);
    }

    /**
     * Causes three losses while the screen is idle: its GL context is lost, the presentation of a
     * frame fails, and another renderer becomes the active one. After each loss, wakes the screen
     * and draws until it is idle again.
     */
    private void losses() {
        Window window = newWindow(WIDTH, HEIGHT).show();
        drawUntilIdle();
        window.print("idle after " + frames);
        window.target.loseContext();
        window.scene.wake();
        drawUntilIdle();
        window.print("context lost, " + frames);
        window.losesFrame = true;
        window.scene.wake();
        drawUntilIdle();
        window.print("frame lost, " + frames);
        renderer.release();
        window.scene.wake();
        drawUntilIdle();
        window.print("released, " + frames);
    }

    /**
     * Plays the stroke through a GesturePlayer. Another renderer is active for two of the frames.
     */
    private void player() {
        Window window = newWindow(WIDTH, HEIGHT).show();
        EffectRenderer other = new EffectRenderer(velmora, ReflectionMap.makeBitmap());
        GesturePlayer player = new GesturePlayer(window.scene);
        player.play(GestureScript.parse(script, "stroke", WIDTH, HEIGHT));
        window.makeCurrent();
        for (int frame = 0; frame < 22; ++frame) {
            if (frame == 5) {
                other.activate();
            } else if (frame == 7) {
                other.release();
            }
            if (renderer.drawFrame(window.scene, time += FramePacer.FRAME_TIME)) {
                player.frameDrawn();
            }
        }
        window.print("played");
        player.stop();
        System.out.println(player.plays());
    }

    private void drawUntilIdle() {
        while (stage.frame(time += FramePacer.FRAME_TIME) && frames < MAX_FRAMES) {
        }
    }

    /** Changes the water grid and the step rate while waves move. */
    private void settings() {
        Window window = newWindow(WIDTH, HEIGHT).show();
        window.play(0, 8);
        Settings fine = new Settings();
        fine.set(Setting.MESH_DETAIL, 120);
        window.scene.setSettings(fine);
        window.play(8, 4);
        window.print("finer");
    }

    private Window newRain() {
        Window window = newWindow(WIDTH / 2, HEIGHT / 2).show();
        Settings rain = new Settings();
        rain.set(Setting.RAIN, 40.0f);
        rain.set(Setting.MESH_DETAIL, 24);
        rain.set(Setting.WATER_ONLY, 1);
        window.scene.setSettings(rain);
        return window;
    }

    /**
     * Hides a screen with rain and shows it again. Then calls drawNow with a time that is {@code
     * drawnAfter} nanoseconds later than the last frame. Continues with normal frames, which are
     * delayed by {@code pause} nanoseconds.
     */
    private void rain(long drawnAfter, long pause) {
        Window window = newRain();
        window.play(30, 10);
        stage.hide(window.scene);
        window.show();
        stage.drawNow(window.scene, window, time + drawnAfter);
        time += pause;
        window.play(30, 10);
        window.print("rain");
    }

    /**
     * Starts rain and draws frames until the screen is idle. Rain ends some time after the last
     * touch, so the screen must become idle.
     */
    private void rainEnds() {
        Window window = newRain();
        for (int times = 0; times < 2; ++times) {
            drawUntilIdle();
            System.out.println(frames > 1200 && frames < MAX_FRAMES);
            frames = 0;
            window.show();
        }
    }

    /**
     * Saves settings and a photo with one store, and reads them with another store, as a second
     * process would.
     */
    private static void store(File folder) throws IOException {
        SettingsStore app = new SettingsStore(folder);
        SettingsStore wallpaper = new SettingsStore(folder);
        System.out.println("photo " + wallpaper.photo() + ", preset '" + wallpaper.presetName()
            + "', default settings " + wallpaper.settings().equals(new Settings()));
        Settings settings = new Settings();
        settings.set(Setting.RAIN, 3.5f);
        settings.setInk(0.1f, 0.2f, 0.3f);
        File first = savePhoto(app, 1);
        app.savePreset("my rain", settings);
        savePhoto(app, 2);
        System.out.println("photo of " + wallpaper.photo().length() + " bytes, old photo exists "
            + first.exists() + ", preset '" + wallpaper.presetName() + "', saved settings "
            + wallpaper.settings().equals(settings) + ", files " + folder.list().length);
        saveAtOnce(app, wallpaper);
        System.out.println("files " + folder.list().length);
        saveInVain("damaged photo",
            () -> app.savePhoto(new ByteArrayInputStream(new byte[3]), file -> false));
        Path file = folder.toPath().resolve("settings.json");
        Files.writeString(file, "{\"settings\": \"{ 7");
        System.out.println("default settings " + wallpaper.settings().equals(new Settings()));
        Files.delete(file);
        Files.createDirectories(file.resolve("blocks"));
        saveInVain("preset", () -> app.savePreset("lost", settings));
        saveInVain("photo", () -> savePhoto(app, 4));
        System.out.println("files " + folder.list().length);
    }

    private static File savePhoto(SettingsStore store, int size) throws IOException {
        return store.savePhoto(new ByteArrayInputStream(new byte[size]), file -> true);
    }

    /**
     * Saves photos and presets on two threads at the same time. No saved photo or preset may be
     * lost.
     */
    private static void saveAtOnce(SettingsStore store, SettingsStore other) throws IOException {
        Thread photos = new Thread(() -> {
            try {
                for (int time = 1; time <= 300; ++time) {
                    File saved = savePhoto(other, time);
                    if (!saved.equals(other.photo())) {
                        System.out.println("lost photo " + time);
                    }
                }
            } catch (IOException error) {
                throw new UncheckedIOException(error);
            }
        });
        photos.start();
        for (int time = 0; photos.isAlive(); ++time) {
            store.savePreset("preset " + time, new Settings());
            if (!store.presetName().equals("preset " + time)) {
                System.out.println("lost preset " + time);
            }
        }
    }

    private interface Saving {
        void run() throws IOException;
    }

    private static void saveInVain(String name, Saving saving) {
        try {
            saving.run();
            System.out.println(name + " saved");
        } catch (IOException expected) {
            System.out.println(name + " refused");
        }
    }

    /** Prints the name, minimum, maximum and default of each setting. */
    private static void table() {
        for (Setting setting : Setting.values()) {
            System.out.println(setting.member + " " + (double) setting.min + " "
                + (double) setting.max + " " + (double) setting.initial);
        }
    }

    /**
     * Compares frames of presets with frames of the player. The arguments are pairs of two files: a
     * preset, and the player's image after 24 frames with this preset.
     */
    private void presets(String[] arguments) throws IOException {
        for (int at = 2; at < arguments.length; at += 2) {
            Settings settings = Preset.parse(Files.readString(Path.of(arguments[at])), "preset");
            if (!Preset.parse(Preset.write(settings), "written").equals(settings)) {
                throw new AssertionError(
                    arguments[at] + " must not change when it is written and parsed again");
            }
            if (Files.exists(Path.of(arguments[at + 1]))) {
                Window window = newWindow(WIDTH, HEIGHT).show();
                window.scene.setSettings(settings);
                window.play(0, 24);
                HostKit.useSurface(window.surface);
                RgbaImage seen = new RgbaImage(WIDTH, HEIGHT, HostKit.readScreen(WIDTH, HEIGHT));
                RgbaImage players = RgbaImage.of(ImageIO.read(Path.of(arguments[at + 1]).toFile()));
                System.out.println(Arrays.equals(seen.rgba(), players.rgba()));
            }
        }
    }

    private static String digest(byte[] bytes) {
        long state = 0xCBF29CE484222325L;
        for (byte one : bytes) {
            state = (state ^ (one & 0xFF)) * 0x100000001B3L;
        }
        return String.format("%016x", state);
    }
}

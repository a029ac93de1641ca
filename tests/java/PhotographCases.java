package javahost;

import java.nio.file.Path;

/**
 * Shows each image on a screen of 64 x 96 pixels, and prints the colours of the screen's four
 * quarters in reading order.
 */
final class PhotographCases {
    private PhotographCases() {}

    public static void main(String[] arguments) {
        for (String file : arguments) {
            RgbaImage image = Photograph.read(Path.of(file), 64, 96);
            System.out.println(letter(image, 6, 6) + letter(image, 57, 6) + letter(image, 6, 89)
                + letter(image, 57, 89) + " " + image.width() + "x" + image.height());
        }
    }

    private static String letter(RgbaImage image, int x, int y) {
        int at = 4 * (y * image.width() + x);
        int lit = 0;
        for (int part = 0; part < 3; ++part) {
            lit = 2 * lit + ((image.rgba()[at + part] & 0xFF) > 128 ? 1 : 0);
        }
        return "kbgcrmyw".substring(lit, lit + 1);
    }
}

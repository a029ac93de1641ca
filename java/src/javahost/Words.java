package javahost;

import java.util.Arrays;
import java.util.List;
import java.util.function.Function;
import java.util.regex.Pattern;

/** The words of one line of a gesture script, taken from the left. */
final class Words {
    private static final Pattern BLANKS = Pattern.compile("[ \t\r]+");

    /** Java's own parsers take signs, suffixes and names on top. */
    private static final Pattern NUMERAL =
        Pattern.compile("-?(\\d+\\.?\\d*|\\.\\d+)([eE][+-]?\\d+)?");

    private final List<String> words;
    private int taken;

    Words(String line) {
        words = Arrays.stream(BLANKS.split(line)).filter(word -> !word.isEmpty()).toList();
    }

    static HostException unexpected(String expected, String found) {
        String what = found.isEmpty() ? "the end of the line" : '"' + found + '"';
        return new HostException("expected " + expected + ", found " + what);
    }

    boolean atEnd() { return taken == words.size(); }

    /** The next word, empty at the end of the line. */
    String peek() { return atEnd() ? "" : words.get(taken); }

    String next() {
        String word = peek();
        taken += word.isEmpty() ? 0 : 1;
        return word;
    }

    void end() {
        if (!atEnd()) {
            throw unexpected("the end of the line", peek());
        }
    }

    int integer(int least, int most, String what) {
        return number(Integer::valueOf, least, most, what);
    }

    <N extends Comparable<N>> N number(Function<String, N> parse, N least, N most, String what) {
        String word = next();
        try {
            if (NUMERAL.matcher(word).matches()) {
                N value = parse.apply(word);
                if (value.compareTo(least) >= 0 && value.compareTo(most) <= 0) {
                    return value;
                }
            }
        } catch (NumberFormatException ignored) {
            // A fraction, or too many digits, where a whole number belongs.
        }
        throw unexpected(what, word);
    }
}

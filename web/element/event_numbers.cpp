#include "web/element/event_numbers.h"

#include <cstddef>
#include <variant>

namespace web {
namespace {

using hostkit::ClearInk;
using hostkit::InkColor;
using hostkit::LoseContext;
using hostkit::ScriptAction;
using hostkit::SecondBackground;
using hostkit::Touch;

constexpr std::size_t headerNumbers = 3;
constexpr std::size_t eventNumbers = 6;
/// Kinds of actions. Each value is the index of the action's type in the variant ScriptAction.
enum class Kind { touch, ink, secondBackground, clearInk, loseContext };

void writeAction(const ScriptAction& action, double* numbers) {
    if (const auto* touch = std::get_if<Touch>(&action)) {
        numbers[0] = static_cast<double>(touch->action);
        numbers[1] = touch->x;
        numbers[2] = touch->y;
        numbers[3] = static_cast<double>(touch->pressure);
    } else if (const auto* ink = std::get_if<InkColor>(&action)) {
        numbers[0] = static_cast<double>(ink->red);
        numbers[1] = static_cast<double>(ink->green);
        numbers[2] = static_cast<double>(ink->blue);
    } else if (const auto* second = std::get_if<SecondBackground>(&action)) {
        numbers[0] = second->on ? 1.0 : 0.0;
    }
}

ScriptAction actionOf(Kind kind, const double* numbers) {
    switch (kind) {
        case Kind::touch:
            return Touch{static_cast<hostkit::TouchAction>(static_cast<int>(numbers[0])),
                         numbers[1], numbers[2], static_cast<float>(numbers[3])};
        case Kind::ink:
            return InkColor{static_cast<float>(numbers[0]), static_cast<float>(numbers[1]),
                            static_cast<float>(numbers[2])};
        case Kind::secondBackground:
            return SecondBackground{numbers[0] != 0.0};
        case Kind::clearInk:
            return ClearInk{};
        case Kind::loseContext:
            return LoseContext{};
    }
    return ClearInk{};
}

}  // namespace

std::vector<double> numbersOf(const hostkit::GestureScript& script) {
    std::vector<double> numbers(headerNumbers + eventNumbers * script.events.size());
    double* next = numbers.data();
    *next++ = script.screenWidth;
    *next++ = script.screenHeight;
    *next++ = script.frames;
    for (const hostkit::ScriptEvent& event : script.events) {
        next[0] = event.frame;
        next[1] = static_cast<double>(event.action.index());
        writeAction(event.action, next + 2);
        next += eventNumbers;
    }
    return numbers;
}

hostkit::GestureScript scriptOf(std::span<const double> numbers) {
    hostkit::GestureScript script{static_cast<int>(numbers[0]),
                                  static_cast<int>(numbers[1]),
                                  static_cast<int>(numbers[2]),
                                  {}};
    for (std::size_t at = headerNumbers; at < numbers.size(); at += eventNumbers) {
        const auto kind = static_cast<Kind>(static_cast<int>(numbers[at + 1]));
        script.events.push_back(
            {static_cast<int>(numbers[at]), actionOf(kind, numbers.data() + at + 2)});
    }
    return script;
}

}  // namespace web

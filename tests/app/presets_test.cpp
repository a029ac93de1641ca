#include "app/presets.h"

#include <gtest/gtest.h>

#include <initializer_list>
#include <string>
#include <vector>

#include "hostkit/host_error.h"

namespace {

using app::PresetValue;
using app::Settings;

/// Returns the error message for a member of a preset that has an invalid value.
std::string errorOf(const std::string& name, const PresetValue& value, const std::string& text) {
    Settings settings;
    try {
        app::setSetting(settings, {name, value, text});
    } catch (const hostkit::HostError& error) {
        EXPECT_EQ(settings, Settings{});
        return error.what();
    }
    return "no error";
}

TEST(Presets, SetEachTypeOfSettingUpToItsLimits) {
    Settings settings;
    app::setSetting(settings, {"exponent", 128.0, "128"});
    app::setSetting(settings, {"damping", 0.8, "0.8"});
    app::setSetting(settings, {"meshDetail", 180.0, "180"});
    app::setSetting(settings, {"waterOnly", true, "true"});
    app::setSetting(settings, {"ink", std::vector{0.0, 0.5, 1.0}, "[0, 0.5, 1]"});
    Settings expected;
    expected.exponent = 128.0f;
    expected.damping = 0.8f;
    expected.meshDetail = 180;
    expected.waterOnly = true;
    expected.ink = {0.0f, 0.5f, 1.0f};
    EXPECT_EQ(settings, expected);
}

TEST(Presets, AnErrorMessageNamesTheExpectedValues) {
    EXPECT_EQ(errorOf("damping", 3.0, "3"), "'damping' must be a number from 0.8 to 0.999, not 3");
    EXPECT_EQ(errorOf("meshDetail", 90.5, "90.5"),
              "'meshDetail' must be a whole number from 24 to 180, not 90.5");
    EXPECT_EQ(errorOf("waterOnly", 1.0, "1"), "'waterOnly' must be true or false, not 1");
    EXPECT_EQ(errorOf("damping", {}, "\"wet\x1b\""),
              "'damping' must be a number from 0.8 to 0.999, not \"wet \"");
    for (const std::vector<double>& ink : {std::vector{0.5, 0.5}, {0.5, 0.5, 1.5}}) {
        EXPECT_EQ(errorOf("ink", ink, "..."), "'ink' must be three numbers from 0 to 1, not ...");
    }
    const std::string unknown = errorOf("wet", true, "true");
    EXPECT_TRUE(unknown.starts_with("there is no setting 'wet'; the settings are ink, damping, "))
        << unknown;
}

TEST(Presets, NumbersHaveTheFewestDigits) {
    EXPECT_EQ(app::numberText(0.97f), "0.97");
    EXPECT_EQ(app::numberText(24.0f), "24");
    EXPECT_EQ(app::shortestNumber(0.1f), 0.1);
}

}  // namespace

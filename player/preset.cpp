#include "player/preset.h"

#include <algorithm>
#include <charconv>
#include <initializer_list>
#include <nlohmann/json.hpp>
#include <system_error>
#include <utility>

#include "player/failure.h"
#include "player/files.h"

namespace player {
namespace {

namespace fs = std::filesystem;
using Json = nlohmann::ordered_json;

/// The shortest number that is this float again: 0.97, not 0.9700000286102295.
Json written(float value) {
    char digits[32];
    const auto [end, error] = std::to_chars(digits, digits + sizeof digits, value);
    return Json::parse(digits, end);
}
Json written(int value) {
    return value;
}
Json written(bool value) {
    return value;
}

template <class Value>
bool read(const Json& member, const SettingField<Value>& field, Value& value) {
    if constexpr (std::is_same_v<Value, bool>) {
        return member.is_boolean() && (value = member.get<bool>(), true);
    } else {
        const bool kind =
            std::is_integral_v<Value> ? member.is_number_integer() : member.is_number();
        const double number = kind ? member.get<double>() : 0.0;
        if (!kind || !(number >= static_cast<double>(field.least)) ||
            !(number <= static_cast<double>(field.most))) {
            return false;
        }
        value = static_cast<Value>(number);
        return true;
    }
}

template <class Value>
std::string rangeOf(const SettingField<Value>& field) {
    if constexpr (std::is_same_v<Value, bool>) {
        return "true or false";
    } else {
        return (std::is_integral_v<Value> ? "a whole number from " : "a number from ") +
               written(field.least).dump() + " to " + written(field.most).dump();
    }
}

bool readInk(const Json& member, std::array<float, 3>& ink) {
    if (!member.is_array() || member.size() != ink.size()) {
        return false;
    }
    for (std::size_t part = 0; part < ink.size(); ++part) {
        if (!member[part].is_number() || !(member[part].get<double>() >= 0.0) ||
            !(member[part].get<double>() <= 1.0)) {
            return false;
        }
        ink[part] = member[part].get<float>();
    }
    return true;
}

std::string knownNames() {
    std::string names = "ink";
    forEachField([&](const auto& field) { names.append(", ").append(field.name); });
    return names;
}

void readMember(const std::string& name, const Json& member, Settings& settings,
                const fs::path& file) {
    const auto expect = [&](bool good, const std::string& what) {
        if (!good) {
            throw Failure(inQuotes(name) + " is to be " + what, file.string());
        }
    };
    bool known = name == "ink";
    if (known) {
        expect(readInk(member, settings.ink), "three numbers from 0 to 1");
    }
    forEachField([&](const auto& field) {
        if (name == field.name) {
            known = true;
            expect(read(member, field, settings.*field.member), rangeOf(field));
        }
    });
    if (!known) {
        throw Failure("there is no setting " + inQuotes(name) + ", only " + knownNames(),
                      file.string());
    }
}

Json parse(const fs::path& file) {
    const std::string text = readWhole(file, "preset");
    try {
        return Json::parse(text);
    } catch (const Json::parse_error& error) {
        const auto place = static_cast<std::ptrdiff_t>(std::min(error.byte, text.size()));
        const auto line = 1 + std::count(text.begin(), text.begin() + place, '\n');
        throw Failure("not JSON from line " + std::to_string(line) + " on", file.string());
    } catch (const Json::exception&) {
        throw Failure("not JSON: a number is too large", file.string());
    }
}

}  // namespace

Settings loadPreset(const fs::path& file) {
    const Json json = parse(file);
    if (!json.is_object()) {
        throw Failure("a preset is a JSON object", file.string());
    }
    Settings settings;
    for (const auto& [name, member] : json.items()) {
        readMember(name, member, settings, file);
    }
    return settings;
}

Settings startSettings(const Options& options) {
    Settings settings = options.preset.empty() ? Settings{} : loadPreset(options.preset);
    settings.waterOnly = settings.waterOnly || options.waterOnly;
    return settings;
}

void savePreset(const Settings& settings, const fs::path& file) {
    Json json;
    forEachField([&](const auto& field) { json[field.name] = written(settings.*field.member); });
    for (const float part : settings.ink) {
        json["ink"].push_back(written(part));
    }
    writeWhole(file, json.dump(4) + '\n');
}

NamedPreset named(const fs::path& file) {
    std::string name = file.stem().string();
    std::ranges::replace(name, '_', ' ');
    return {std::move(name), file};
}

fs::path portraitOf(const fs::path& preset) {
    return fs::path(preset).replace_extension(".jpg");
}

std::vector<NamedPreset> presetsIn(const fs::path& folder) {
    std::vector<NamedPreset> presets;
    std::error_code ignored;
    for (const fs::directory_entry& entry : fs::directory_iterator(folder, ignored)) {
        if (entry.path().extension() == ".json") {
            presets.push_back(named(entry.path()));
        }
    }
    std::ranges::sort(presets, {}, &NamedPreset::name);
    return presets;
}

}  // namespace player

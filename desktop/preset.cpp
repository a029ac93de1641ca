#include "desktop/preset.h"

#include <algorithm>
#include <cstddef>
#include <nlohmann/json.hpp>
#include <system_error>

#include "app/presets.h"
#include "desktop/failure.h"
#include "desktop/files.h"
#include "hostkit/host_error.h"

namespace desktop {
namespace {

namespace fs = std::filesystem;
using Json = nlohmann::ordered_json;

/// Returns a JSON number with the fewest digits that still convert back to this float.
Json written(float value) {
    return Json::parse(app::numberText(value));
}
Json written(int value) {
    return value;
}
Json written(bool value) {
    return value;
}

app::PresetValue valueOf(const Json& member) {
    if (member.is_boolean()) {
        return member.get<bool>();
    }
    if (member.is_number()) {
        return member.get<double>();
    }
    const auto isNumber = [](const Json& part) { return part.is_number(); };
    if (member.is_array() && std::ranges::all_of(member, isNumber)) {
        return member.get<std::vector<double>>();
    }
    return {};
}

Json parse(const std::string& text, const std::string& name) {
    try {
        return Json::parse(text);
    } catch (const Json::parse_error& error) {
        const auto place = static_cast<std::ptrdiff_t>(std::min(error.byte, text.size()));
        const auto line = 1 + std::count(text.begin(), text.begin() + place, '\n');
        throw Failure("not JSON: syntax error in line " + std::to_string(line), name);
    } catch (const Json::exception&) {
        throw Failure("not JSON: a number is too large", name);
    }
}

}  // namespace

app::Settings loadPreset(const fs::path& file) {
    return parsePreset(readWhole(file, "preset"), file.string());
}

app::Settings parsePreset(const std::string& text, const std::string& name) {
    const Json json = parse(text, name);
    if (!json.is_object()) {
        throw Failure(app::presetMustBeObject, name);
    }
    app::Settings settings;
    std::string faults;
    for (const auto& [key, member] : json.items()) {
        try {
            app::setSetting(settings, {key, valueOf(member), member.dump()});
        } catch (const hostkit::HostError& error) {
            faults.append(faults.empty() ? "" : "; ").append(error.what());
        }
    }
    if (!faults.empty()) {
        throw Failure(faults, name);
    }
    return settings;
}

void savePreset(const app::Settings& settings, const fs::path& file) {
    Json json;
    app::forEachField(
        [&](const auto& field) { json[field.name] = written(settings.*field.member); });
    for (const float part : settings.ink) {
        json["ink"].push_back(written(part));
    }
    writeWhole(file, json.dump(4) + '\n');
}

NamedPreset named(const fs::path& file) {
    return {app::presetName(file.stem().string()), file};
}

fs::path thumbnailOf(const fs::path& preset) {
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

}  // namespace desktop

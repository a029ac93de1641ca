#include "player/closest_name.h"

#include <algorithm>
#include <cstddef>
#include <numeric>
#include <vector>

namespace player {
namespace {

/// Returns the smallest number of letters to insert, delete or replace that turns one text into the other.
std::size_t editDistance(std::string_view from, std::string_view to) {
    std::vector<std::size_t> row(to.size() + 1);
    std::iota(row.begin(), row.end(), std::size_t{0});
    for (std::size_t y = 0; y < from.size(); ++y) {
        std::size_t diagonal = row[0];
        row[0] = y + 1;
        for (std::size_t x = 0; x < to.size(); ++x) {
            const std::size_t replaced = diagonal + (from[y] == to[x] ? 0 : 1);
            diagonal = row[x + 1];
            row[x + 1] = std::min({replaced, row[x] + 1, row[x + 1] + 1});
        }
    }
    return row.back();
}

}  // namespace

std::string suggestion(std::string_view word, std::span<const std::string> names) {
    constexpr std::size_t maxDistance = 2;
    const auto distance = [&](const std::string& name) { return editDistance(word, name); };
    const auto closest = std::ranges::min_element(names, {}, distance);
    if (closest == names.end() || distance(*closest) > maxDistance) {
        return "";
    }
    return "; did you mean " + *closest + "?";
}

}  // namespace player

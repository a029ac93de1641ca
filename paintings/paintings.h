#pragma once

#include <array>
#include <string_view>

#include "hostkit/image.h"

namespace paintings {

/// @file Backgrounds that this project paints. The paintings are light and clear, so that ink of every colour is
/// visible on them. The same name and size always give the same image. A screen of another size shows the same
/// painting, cropped around its centre to the shape of the screen.

hostkit::Image paintSand(int width, int height);
hostkit::Image paintSky(int width, int height);
hostkit::Image paintStones(int width, int height);
hostkit::Image paintPaper(int width, int height);
hostkit::Image paintLeaves(int width, int height);
hostkit::Image paintPool(int width, int height);

struct Painting {
    /// Name for the user.
    const char* name;
    /// Function that paints an image of width x height pixels.
    hostkit::Image (*paint)(int width, int height);
};

/// All paintings. The first painting is the default background of the web page.
inline constexpr std::array<Painting, 6> allPaintings = {{{"sand", paintSand},
                                                          {"sky", paintSky},
                                                          {"stones", paintStones},
                                                          {"paper", paintPaper},
                                                          {"leaves", paintLeaves},
                                                          {"pool", paintPool}}};

/// Returns the painting with this name, or null if there is none.
const Painting* findPainting(std::string_view name);

}  // namespace paintings

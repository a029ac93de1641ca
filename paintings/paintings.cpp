#include "paintings/paintings.h"

#include <algorithm>

namespace paintings {

const Painting* findPainting(std::string_view name) {
    const Painting* const end = allPaintings.data() + allPaintings.size();
    const Painting* const found = std::find_if(
        allPaintings.data(), end, [&](const Painting& painting) { return painting.name == name; });
    return found == end ? nullptr : found;
}

}  // namespace paintings

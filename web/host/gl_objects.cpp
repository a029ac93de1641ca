#include "web/host/gl_objects.h"

#include <emscripten/emscripten.h>

// clang-format off
/// Deletes all GL objects and resets the counter of names, because Emscripten's tables grow with the highest name. GL
/// contexts have names from the same counter and keep them, so the counter continues after the contexts.
EM_JS(void, deleteGlObjects, (), {
    function drop(kind, names) {
        names.filter(object => object && GLctx['is' + kind](object)).forEach(object => GLctx['delete' + kind](object));
        names.length = 0;
    }
    drop('Buffer', GL.buffers);
    drop('Framebuffer', GL.framebuffers);
    drop('Program', GL.programs);
    drop('Shader', GL.shaders);
    drop('Texture', GL.textures);
    GL.counter = GL.contexts.length;
});
// clang-format on

namespace web {

void dropGlObjects() {
    deleteGlObjects();
}

}  // namespace web

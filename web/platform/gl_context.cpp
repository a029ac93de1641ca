#include "hostkit/gl_context.h"

#include "hostkit/host_error.h"

// The page creates the canvas and its GL context, so off-screen contexts are not supported.

namespace hostkit {

GlContext::GlContext(int, int) {
    throw HostError(
        "off-screen GL contexts are not supported on a web page: draw on the page's canvas");
}
GlContext::~GlContext() = default;

}  // namespace hostkit

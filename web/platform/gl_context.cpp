#include "hostkit/gl_context.h"

#include "hostkit/host_error.h"

// The page makes the canvas and its context; a host of its own off-screen context has none here.

namespace hostkit {

GlContext::GlContext(int, int) {
    throw HostError("a page has no context but its canvas'");
}
GlContext::~GlContext() = default;

}  // namespace hostkit

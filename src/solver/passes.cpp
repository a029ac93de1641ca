#include "solver/passes.h"

#include <cstdlib>

namespace velmora {

VectorPass::~VectorPass() {
    std::free(name);
}

ScalarPass::~ScalarPass() {
    std::free(name);
}

}  // namespace velmora

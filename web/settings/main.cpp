#include <cstdio>

#include "web/settings/typescript.h"

// Prints the table of settings as a TypeScript module.
int main() {
    std::fputs(web::settingsModule().c_str(), stdout);
}

#include <cstdio>

#include "web/settings/typescript.h"

// Prints the tables of settings and labels as a TypeScript module.
int main() {
    std::fputs(web::settingsModule().c_str(), stdout);
}

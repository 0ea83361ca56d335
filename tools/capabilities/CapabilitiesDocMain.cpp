// capabilities-doc: prints docs/capabilities.md.
#include <iostream>

#include "CapabilityDoc.h"

int main() {
    std::cout << Lumora::CapabilitiesMarkdown();
    return std::cout.good() ? 0 : 1;
}

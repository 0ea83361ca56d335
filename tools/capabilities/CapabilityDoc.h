// docs/capabilities.md as generated from the capability reference.
#ifndef LUMORA_CAPABILITY_DOC_H
#define LUMORA_CAPABILITY_DOC_H

#include <string>

namespace Lumora {

// The whole page: an introduction and one table row per bit 0..99.
std::string CapabilitiesMarkdown();

}  // namespace Lumora

#endif  // LUMORA_CAPABILITY_DOC_H

#include "NumberText.h"

#include <cctype>

namespace UilayerSim {

bool IsIntegerSyntax(const std::string& text) {
    size_t i = 0;
    if (i < text.size() && (text[i] == '+' || text[i] == '-')) {
        ++i;
    }
    const bool hex =
        i + 1 < text.size() && text[i] == '0' && (text[i + 1] == 'x' || text[i + 1] == 'X');
    if (hex) {
        i += 2;
    }
    if (i >= text.size()) {
        return false;
    }
    for (; i < text.size(); ++i) {
        const auto c = static_cast<unsigned char>(text[i]);
        if (hex ? !isxdigit(c) : !isdigit(c)) {
            return false;
        }
    }
    return true;
}

}  // namespace UilayerSim

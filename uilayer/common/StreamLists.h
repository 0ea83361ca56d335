// The per-role stream lists that the session and every request record keep,
// one list per StreamType value below EStreamTypeMax.
#ifndef LUMORA_STREAM_LISTS_H
#define LUMORA_STREAM_LISTS_H

#include <vector>

#include "IuiLayer.h"

namespace Lumora {

using StreamLists = std::vector<_UIStreamInfo>[EStreamTypeMax];

// The list of role `type`. A type outside the lists gets `none`, a list that
// nothing is ever added to: clearing it undoes what a caller may have put
// there and allocates nothing.
inline std::vector<_UIStreamInfo>* StreamListOf(StreamLists& lists,
                                                std::vector<_UIStreamInfo>& none, StreamType type) {
    if (type < 0 || type >= EStreamTypeMax) {
        none.clear();
        return &none;
    }
    return &lists[type];
}

}  // namespace Lumora

#endif  // LUMORA_STREAM_LISTS_H

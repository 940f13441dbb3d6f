#include "geoid/TileCache.h"

namespace orv {

std::uint64_t NextTileStamp() {
    static std::atomic<std::uint64_t> last = 0;
    return ++last;
}

}  // namespace orv

#pragma once

#include <atomic>
#include <memory>
#include <mutex>
#include <utility>
#include <vector>

#include "platform/os/Clock.h"

namespace orv {

/// A mutex that stays behind when its owner is copied.
struct OwnMutex : std::mutex {
    OwnMutex() = default;
    OwnMutex(const OwnMutex&) noexcept {}
    OwnMutex& operator=(const OwnMutex&) noexcept { return *this; }
};

/// When a tile was last asked for: milliseconds since 1970, 0 until the first hit. Copies of a model share tiles.
struct TileUse {
    mutable std::atomic<double> lastUse = 0.0;
};

/// The pieces of a grid file that a model keeps in memory, in the order in which they were read; 41 at most. `Tile`
/// derives from TileUse and never changes otherwise. Any thread may call; copies hold their own list of shared tiles.
template <class Tile>
class TileCache {
public:
    using Pointer = std::shared_ptr<const Tile>;

    TileCache() = default;
    TileCache(const TileCache& other) : tiles(other.List()) {}
    TileCache& operator=(const TileCache& other) {
        if (this != &other) {
            std::vector<Pointer> theirs = other.List();
            const std::lock_guard lock(mutex);
            tiles = std::move(theirs);
        }
        return *this;
    }

    /// The first tile of the list for which `holds(tile)` is true, marked as used now; null if there is none.
    template <class Holds>
    Pointer Find(Holds holds) const {
        Pointer hit;
        {
            const std::lock_guard lock(mutex);
            for (const Pointer& tile : tiles) {
                if (!holds(*tile)) continue;
                hit = tile;
                break;
            }
        }
        if (hit) hit->lastUse.store(CExTime::GetCurTime(), std::memory_order_relaxed);
        return hit;
    }

    /// Makes room, then appends what `make()` returns; a null pointer adds nothing. Everything happens under the lock,
    /// reading the file included: a second thread that misses at the same moment waits and then adds a tile of its own.
    template <class Make>
    Pointer Add(Make make) {
        const std::lock_guard lock(mutex);
        while (tiles.size() > 40) Evict();
        Pointer tile = make();
        if (tile) tiles.push_back(tile);
        return tile;
    }

    void Clear() {
        const std::lock_guard lock(mutex);
        tiles.clear();
    }
    std::vector<Pointer> List() const {
        const std::lock_guard lock(mutex);
        return tiles;
    }

private:
    // The tile that was used longest ago. One that was never hit is the best choice only until the next is looked at:
    // it may just have been read for a position that is about to come back.
    void Evict() {
        std::size_t oldest = 0;
        double best = 0.0;
        for (std::size_t i = 0; i < tiles.size(); ++i) {
            const double used = tiles[i]->lastUse.load(std::memory_order_relaxed);
            if (best != 0.0 && !(used < best)) continue;
            best = used;
            oldest = i;
        }
        tiles.erase(tiles.begin() + static_cast<std::ptrdiff_t>(oldest));
    }

    mutable OwnMutex mutex;
    std::vector<Pointer> tiles;
};

}  // namespace orv

#pragma once

#include <atomic>
#include <cstdint>
#include <memory>
#include <mutex>
#include <utility>
#include <vector>

#include "platform/Export.h"
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

/// A number that no list of tiles in this process has had before.
ORV_EXPORT std::uint64_t NextTileStamp();

/// The pieces of a grid file that a model keeps in memory, in the order in which they were read; 41 at most. `Tile`
/// derives from TileUse and never changes otherwise. Any thread may call; copies hold their own list of shared tiles.
///
/// A list never changes either: a new one takes its place. Each thread remembers the list that it saw last and looks
/// through it without a lock as long as the stamp is the same, so that vessels on many threads don't wait for each
/// other.
template <class Tile>
class TileCache {
public:
    using Pointer = std::shared_ptr<const Tile>;
    using Tiles = std::vector<Pointer>;

    TileCache() : tiles(std::make_shared<const Tiles>()) {}
    ~TileCache() {
        if (seen.stamp == stamp) See(0, nullptr);
    }
    TileCache(const TileCache& other) : tiles(other.Shared()) {}
    TileCache& operator=(const TileCache& other) {
        if (this != &other) {
            std::shared_ptr<const Tiles> theirs = other.Shared();
            const std::lock_guard lock(mutex);
            Publish(std::move(theirs));
        }
        return *this;
    }

    /// The first tile of the list for which `holds(tile)` is true; null if there is none. Good until this thread asks
    /// the next time. To be marked by `Use` once it has answered.
    template <class Holds>
    const Tile* Find(Holds holds) const {
        if (seen.stamp != stamp.load(std::memory_order_acquire)) [[unlikely]] {
            LookAgain();
        }
        for (const Pointer& tile : *seen.tiles) {
            if (holds(*tile)) return tile.get();
        }
        return nullptr;
    }

    /// Marks a tile as used now. Threads on one tile mustn't pass the line of memory around for nothing.
    static void Use(const Tile& tile) {
        const double now = CExTime::GetCoarseTime();
        if (tile.lastUse.load(std::memory_order_relaxed) != now) tile.lastUse.store(now, std::memory_order_relaxed);
    }

    /// Makes room, then appends what `make()` returns; a null pointer adds nothing. Everything happens under the lock,
    /// reading the file included: a second thread that misses at the same moment waits and then adds a tile of its own.
    template <class Make>
    const Tile* Add(Make make) {
        const std::lock_guard lock(mutex);
        Tiles changed = *tiles;
        while (changed.size() > 40) Evict(changed);
        const Pointer tile = make();
        if (tile) changed.push_back(tile);
        if (tile || changed.size() != tiles->size()) Publish(std::make_shared<const Tiles>(std::move(changed)));
        See(stamp, tiles);
        return tile.get();
    }

    void Clear() {
        const std::lock_guard lock(mutex);
        Publish(std::make_shared<const Tiles>());
    }
    Tiles List() const { return *Shared(); }

private:
    // What this thread looks through, and what keeps it. The first has neither a constructor nor a destructor and a
    // fixed place, so that finding it takes no call.
    struct Seen {
        std::uint64_t stamp;
        const Tiles* tiles;
    };
    [[gnu::tls_model("initial-exec")]] static inline thread_local constinit Seen seen = {0, nullptr};
    static void See(std::uint64_t newStamp, std::shared_ptr<const Tiles> newTiles) {
        thread_local std::shared_ptr<const Tiles> kept;
        seen = {newStamp, newTiles.get()};
        kept = std::move(newTiles);
    }
    [[gnu::noinline]] void LookAgain() const {
        const std::lock_guard lock(mutex);
        See(stamp, tiles);
    }
    std::shared_ptr<const Tiles> Shared() const {
        const std::lock_guard lock(mutex);
        return tiles;
    }
    void Publish(std::shared_ptr<const Tiles> changed) {
        tiles = std::move(changed);
        stamp.store(NextTileStamp(), std::memory_order_release);
    }

    // The tile that was used longest ago. One that was never hit is the best choice only until the next is looked at:
    // it may just have been read for a position that is about to come back.
    static void Evict(Tiles& from) {
        std::size_t oldest = 0;
        double best = 0.0;
        for (std::size_t i = 0; i < from.size(); ++i) {
            const double used = from[i]->lastUse.load(std::memory_order_relaxed);
            if (best != 0.0 && !(used < best)) continue;
            best = used;
            oldest = i;
        }
        from.erase(from.begin() + static_cast<std::ptrdiff_t>(oldest));
    }

    mutable OwnMutex mutex;
    std::shared_ptr<const Tiles> tiles;  // guarded by the mutex; what it points to never changes
    std::atomic<std::uint64_t> stamp = NextTileStamp();
};

}  // namespace orv

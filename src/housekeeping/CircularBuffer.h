#pragma once

#include <algorithm>
#include <array>
#include <atomic>
#include <cstddef>
#include <cstdint>
#include <mutex>
#include <new>
#include <utility>
#include <vector>

#include "platform/os/CriticalSection.h"

namespace orv {

/// What the last operation on a ring came to.
enum RingStatus : int {
    kRingOk = 0,
    kRingNoMemory = 4,  ///< the array could not be allocated
    kRingNoArray = 5,
    kRingNoUnused = 6,  ///< no message that wasn't handed out yet
    kRingEmpty = 7,
    kRingOutOfRange = 8,
    kRingNotFound = 11,
};

/// The last messages, in a ring that never grows: the newest overwrites the oldest. A slot is a place in the ring, a
/// distance counts back from the newest message, which has 0. Any thread may call; the lock is held for one slot at a
/// time. A failed read leaves its output alone and the reason in the status.
template <class Item>
class CircularBuffer {
public:
    CircularBuffer() = default;
    virtual ~CircularBuffer() = default;
    CircularBuffer(const CircularBuffer&) = delete;
    CircularBuffer& operator=(const CircularBuffer&) = delete;

    /// A fresh array; all messages are gone.
    bool Init(int newCapacity) {
        const std::lock_guard lock(mutex);
        writeIndex = 0;
        unused = 0;
        total = 0;
        capacity = 0;
        try {
            items = std::vector<Item>(static_cast<std::size_t>(std::max(newCapacity, 0)));
        } catch (const std::bad_alloc&) {
            items.clear();
            return End(kRingNoMemory);
        }
        capacity = static_cast<int>(items.size());
        return End(kRingOk);
    }

    bool Add(Item item) {
        const std::lock_guard lock(mutex);
        if (items.empty()) return End(kRingNoArray);
        std::swap(items[static_cast<std::size_t>(writeIndex)], item);  // the oldest goes when the lock is free again
        writeIndex = writeIndex + 1 < capacity ? writeIndex + 1 : 0;
        // Changed under the lock only, and nothing hangs on their order.
        total.store(std::min(total + 1, capacity.load()), std::memory_order_relaxed);
        unused.store(std::min(unused + 1, capacity.load()), std::memory_order_relaxed);
        return End(kRingOk);
    }

    /// What is in a slot that holds a message.
    bool GetAt(long slot, Item& out) const {
        const std::lock_guard lock(mutex);
        if (slot < 0 || slot >= total) return End(kRingOutOfRange);
        out = items[static_cast<std::size_t>(slot)];
        return End(kRingOk);
    }

    bool GetPrevious(long distance, Item& out) const {
        const std::lock_guard lock(mutex);
        long slot = 0;
        return SlotOf(distance, slot) && GetAt(slot, out);
    }

    bool GetLast(Item& out) const {
        const std::lock_guard lock(mutex);
        long slot = 0;
        return LastSlot(slot) && GetAt(slot, out);
    }

    bool LastSlot(long& slot) const {
        const std::lock_guard lock(mutex);
        return total > 0 ? SlotOf(0, slot) : End(kRingEmpty);
    }

    /// The oldest message that wasn't handed out yet.
    bool GetUnused(Item& out) {
        const std::lock_guard lock(mutex);
        if (unused < 1) return End(kRingNoUnused);
        if (!GetPrevious(unused - 1, out)) return false;
        --unused;
        return true;
    }

    int Capacity() const { return capacity; }
    int Total() const { return total; }
    int Unused() const { return unused; }
    int Status() const { return status; }

protected:
    bool SlotOf(long distance, long& slot) const {
        const std::lock_guard lock(mutex);
        if (distance < 0 || distance >= capacity || distance >= total) return End(kRingOutOfRange);
        slot = (writeIndex - distance - 1 + capacity) % capacity;
        return End(kRingOk);
    }
    bool End(int newStatus) const {
        status.exchange(newStatus);
        return newStatus == kRingOk;
    }

    std::vector<Item> items;
    mutable CriticalSection mutex;
    // Changed under the mutex; the counts are also read without.
    std::atomic<int> capacity{0};
    int writeIndex = 0;  ///< slot of the next message
    std::atomic<int> unused{0};
    std::atomic<int> total{0};
    mutable std::atomic<int> status{kRingOk};  ///< also set outside the mutex
};

/// Finds messages by their sequence number. The found one isn't copied: the caller learns where it is.
template <class Item>
class SearchBuffer : public CircularBuffer<Item> {
public:
    /// `distance`: from the newest message.
    bool Search(const Item& wanted, long& distance) const {
        for (long i = 0; i < this->Capacity(); ++i) {
            Item item;
            if (!this->GetPrevious(i, item)) return false;  // out of range: all of them were looked at
            if (item.GetSequence() != wanted.GetSequence()) continue;
            distance = i;
            return true;
        }
        return this->End(kRingNotFound);
    }

    bool SearchAbsolute(const Item& wanted, long& slot) const {
        long at = 0, steps = 0, size = 0;
        {
            const std::lock_guard lock(this->mutex);
            at = this->writeIndex;
            steps = this->total;
            size = this->capacity;
        }
        this->End(kRingOk);
        for (; steps > 0; --steps) {
            at = (at - 1 + size) % size;
            Item item;
            if (!this->GetAt(at, item)) return false;
            if (item.GetSequence() != wanted.GetSequence()) continue;
            slot = at;
            return true;
        }
        return false;
    }

private:
    std::array<std::uint32_t, 4> reserved{};
};

}  // namespace orv

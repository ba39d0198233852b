#pragma once

// The states a placement search has found dead, so that it never explores
// them twice. A state is a level (the word about to be laid) and the set of
// occupied cells, keyed by a 128-bit Zobrist hash: the xor of a random key
// per occupied cell and one per level, kept up to date as cells are taken
// and given back.

#include "core/gamestate.h"

#include <QtGlobal>

#include <algorithm>
#include <array>
#include <cstddef>
#include <vector>

namespace lexicove::placing {

struct Key128 {
    quint64 low = 0;
    quint64 high = 0;
    Key128 &operator^=(const Key128 &other)
    {
        low ^= other.low;
        high ^= other.high;
        return *this;
    }
    friend Key128 operator^(Key128 a, const Key128 &b) { return a ^= b; }
    friend bool operator==(const Key128 &, const Key128 &) = default;
};

inline quint64 splitMix64(quint64 &state)
{
    quint64 z = (state += 0x9E3779B97F4A7C15ULL);
    z = (z ^ (z >> 30)) * 0xBF58476D1CE4E5B9ULL;
    z = (z ^ (z >> 27)) * 0x94D049BB133111EBULL;
    return z ^ (z >> 31);
}

// Random keys of the cells and of the levels, the same for every search.
struct ZobristKeys {
    std::array<Key128, GameState::kMaxSide * GameState::kMaxSide> cell;
    std::array<Key128, GameState::kMaxWords + 2> level;
};

inline const ZobristKeys &zobristKeys()
{
    static const ZobristKeys keys = [] {
        ZobristKeys k;
        quint64 seed = 0x4C657869636F7665ULL;
        for (Key128 &key : k.cell)
            key = {splitMix64(seed), splitMix64(seed)};
        for (Key128 &key : k.level)
            key = {splitMix64(seed), splitMix64(seed)};
        return k;
    }();
    return keys;
}

// The states found dead: an open-addressed table that starts small, doubles
// as it fills, up to a fixed size. When a probe window of the full table is
// taken, an old entry is overwritten, which only forgets a dead end.
class FailedStates {
public:
    void reset()
    {
        if (m_slots.size() > kFirstSlots)
            std::vector<Key128>().swap(m_slots); // a big table is given back
        else
            std::fill(m_slots.begin(), m_slots.end(), Key128{});
        m_count = 0;
    }

    bool contains(Key128 key) const
    {
        if (m_count == 0)
            return false;
        key.high |= 1; // an all-zero slot is empty
        const std::size_t mask = m_slots.size() - 1;
        const std::size_t start = key.low & mask;
        for (std::size_t i = 0; i < kProbe; ++i) {
            const Key128 &slot = m_slots[(start + i) & mask];
            if (slot == key)
                return true;
            if (slot.high == 0)
                return false;
        }
        return false;
    }

    void insert(Key128 key)
    {
        if (m_slots.empty())
            m_slots.assign(kFirstSlots, Key128{});
        else if (2 * (m_count + 1) > m_slots.size() && m_slots.size() < kMostSlots)
            grow();
        key.high |= 1;
        place(key);
    }

private:
    static constexpr std::size_t kFirstSlots = std::size_t(1) << 12; // 64 KiB
    static constexpr std::size_t kMostSlots = std::size_t(1) << 16;  // 1 MiB
    static constexpr std::size_t kProbe = 4;

    void place(const Key128 &key)
    {
        const std::size_t mask = m_slots.size() - 1;
        const std::size_t start = key.low & mask;
        for (std::size_t i = 0; i < kProbe; ++i) {
            Key128 &slot = m_slots[(start + i) & mask];
            if (slot == key)
                return;
            if (slot.high == 0) {
                slot = key;
                ++m_count;
                return;
            }
        }
        m_slots[(start + (key.high >> 60) % kProbe) & mask] = key;
    }

    void grow()
    {
        std::vector<Key128> old(2 * m_slots.size(), Key128{});
        old.swap(m_slots);
        m_count = 0;
        for (const Key128 &key : old)
            if (key.high != 0)
                place(key);
    }

    std::vector<Key128> m_slots; // allocated at the first dead end
    std::size_t m_count = 0;
};

} // namespace lexicove::placing

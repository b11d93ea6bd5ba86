#pragma once

#include <QtGlobal>

// Decisions by a seeded generator: the same seed, the same decisions.
class Chance
{
public:
    explicit Chance(quint32 seed)
        : state(seed * 2654435761U + 1)
    {
    }

    // A number from 0 to bound - 1.
    int below(int bound)
    {
        state ^= state << 13;
        state ^= state >> 7;
        state ^= state << 17;
        return static_cast<int>((state >> 16) % static_cast<quint64>(bound));
    }
    bool oneIn(int number) { return below(number) == 0; }

private:
    quint64 state;
};

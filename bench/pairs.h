#pragma once

#include <benchmark/benchmark.h>

#include <functional>
#include <initializer_list>

// Each figure of the agent stands beside a floor: what Qt's own calls for the same thing cost, in the same process. The
// two are benchmarks "NAME|ours|SIZE" and "NAME|floor|SIZE", run in turns by measure.py. Where the agent must ask Qt for more
// than the floor does, "NAME|qt|SIZE" is that part of it.

// The work to be measured, for one size. Made when the measurement begins, so that only what it needs is set up.
using Measured = std::function<void()>;
using MakeMeasured = std::function<Measured(int size)>;

// The clock that a pair is timed with. Work of this process alone is measured in processor time, which other processes do
// not disturb; where the X server takes part, in elapsed time.
enum class Clock { Processor, Wall };

// Bytes that a run produces, for those where that is of interest: it may set this.
extern int bytesPerRun;

void registerPair(const char* name, Clock clock, std::initializer_list<int> sizes, const MakeMeasured& ours,
    const MakeMeasured& floor, const MakeMeasured& qt = MakeMeasured());

// Sizes that show how the cost grows.
#define GROWING_SIZES                                                                                                  \
    {                                                                                                                  \
        100, 1000, 10000, 100000                                                                                       \
    }

// One per file of benchmarks; called before they are run.
void registerClicks();
void registerItems();
void registerLocating();
void registerMenus();
void registerResolution();
void registerStarting();
void registerTexts();
void registerTrees();

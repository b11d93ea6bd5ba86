// Benchmarks in one process: the agent's functions beside Qt's. Takes the options of Google Benchmark.

#include "pairs.h"

#include <QApplication>

#include <initializer_list>
#include <string>

namespace {

void registerOne(const std::string& name, Clock clock, int size, const MakeMeasured& make)
{
    auto* registered = benchmark::RegisterBenchmark(name.c_str(), [size, make](benchmark::State& state) {
        const Measured measured = make(size);
        measured(); // caches of Qt's
        bytesPerRun = 0;
        for (auto _ : state)
            measured();
        state.SetBytesProcessed(state.iterations() * bytesPerRun);
    });
    if (clock == Clock::Wall)
        registered->UseRealTime();
}

} // namespace

int bytesPerRun = 0;

void registerPair(const char* name, Clock clock, std::initializer_list<int> sizes, const MakeMeasured& ours,
    const MakeMeasured& floor, const MakeMeasured& qt)
{
    for (const int size : sizes) {
        const std::string suffix = '|' + std::to_string(size) + '|';
        registerOne(name + std::string("|ours") + suffix, clock, size, ours);
        registerOne(name + std::string("|floor") + suffix, clock, size, floor);
        if (qt)
            registerOne(name + std::string("|qt") + suffix, clock, size, qt);
    }
}

int main(int argc, char** argv)
{
    QApplication application(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    registerResolution();
    registerTrees();
    registerItems();
    registerLocating();
    registerTexts();
    registerClicks();
    registerMenus();
    registerStarting();
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 2;
    return benchmark::RunSpecifiedBenchmarks() > 0 ? 0 : 1;
}

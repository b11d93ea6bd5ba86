#include "unittests.h"

#include <algorithm>
#include <cstdio>
#include <cstring>

std::vector<unit::Tests>& unit::allTests()
{
    static std::vector<Tests> tests;
    return tests;
}

int main(int argc, char** argv)
{
    const std::vector<unit::Tests>& all = unit::allTests();
    const auto chosen = std::find_if(all.begin(), all.end(),
        [&](const unit::Tests& tests) { return argc > 1 && std::strcmp(tests.name, argv[1]) == 0; });
    if (chosen == all.end()) {
        std::fputs("Say whose tests to run:\n", stderr);
        for (const unit::Tests& tests : all)
            std::fprintf(stderr, "  %s\n", tests.name);
        return 2;
    }
    std::copy(argv + 2, argv + argc + 1, argv + 1); // with the null pointer at the end
    return chosen->run(argc - 1, argv);
}

// A program that gets Qt with the module named by its argument, as interpreters do: nothing else in the
// process sees it.

#include <cstdio>
#include <cstdlib>
#include <dlfcn.h>

int main(int argc, char** argv)
{
    void* const module = argc > 1 ? dlopen(argv[1], RTLD_NOW | RTLD_LOCAL) : nullptr;
    void* const run = module ? dlsym(module, "runModule") : nullptr;
    if (!run)
        return 2;
    const int result = reinterpret_cast<int (*)(int, char**)>(run)(argc, argv);
    const char* const preloaded = std::getenv("LD_PRELOAD");
    std::printf("LD_PRELOAD=%s\n", preloaded ? preloaded : "<unset>");
    return result;
}

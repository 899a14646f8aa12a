// Loads the library that it is told, makes a call on several threads, closes the library and goes on. What is left of the
// call must not bring the program down. It is not linked with the library.
#include <chrono>
#include <cstdio>
#include <thread>
#include <vector>

#include <dlfcn.h>

#include "zelcv.h"

int main(int, char** argv)
{
    void* library = dlopen(argv[1], RTLD_NOW | RTLD_LOCAL);
    if (!library) return std::puts(dlerror()), 1;
    const auto absDiff = reinterpret_cast<decltype(&zeliAbsDiff_8u_C1R)>(dlsym(library, "zeliAbsDiff_8u_C1R"));
    std::vector<Zel8u> a(512 * 512, 7), b(512 * 512, 9), dst(512 * 512);
    if (!absDiff || absDiff(a.data(), 512, b.data(), 512, dst.data(), 512, {512, 512}) != zelStatusOk) return 2;
    if (dlclose(library) != 0) return 3;
    std::this_thread::sleep_for(std::chrono::milliseconds(50)); // threads that waited for more work go to sleep
    return dst == std::vector<Zel8u>(512 * 512, 2) ? 0 : 4;
}

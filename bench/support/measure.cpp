#include "support/measure.h"

#include <benchmark/benchmark.h>

#include <cstdio>
#include <cstring>
#include <set>

namespace zelbench {
namespace {

constexpr ZeliSize kSizes[] = {{640, 480}, {1920, 1080}, {3840, 2160}};

std::string sized(const std::string& name, ZeliSize size)
{
    return name + "/" + std::to_string(size.width) + "x" + std::to_string(size.height);
}

void run(const std::string& name, double bytesPerPixel, ZeliSize size, const Prepare& prepare, int threads)
{
    benchmark::RegisterBenchmark(sized(name, size).c_str(), [=](benchmark::State& state) {
        zelSetNumThreads(threads);
        const auto call = prepare(size);
        for (auto _ : state) {
            call();
            benchmark::ClobberMemory();
        }
        state.counters["pixels"] = double(size.width) * size.height;
        state.counters["bytesPerPixel"] = bytesPerPixel;
    })->UseRealTime();
}

// memcpy of half of the bytes: as many are read as are written.
void measureCopy(double bytesPerPixel)
{
    static std::set<double> registered;
    if (!registered.insert(bytesPerPixel).second) return;
    char name[40];
    std::snprintf(name, sizeof name, "memcpy:%g", bytesPerPixel);
    for (ZeliSize size : kSizes)
        run(name, bytesPerPixel, size, [bytesPerPixel](ZeliSize region) -> std::function<void()> {
            const auto bytes = std::size_t(bytesPerPixel * region.width * region.height / 2);
            std::shared_ptr<void> from(zelMalloc(bytes), zelFree), to(zelMalloc(bytes), zelFree);
            std::memset(from.get(), 1, bytes);
            return [=] { std::memcpy(to.get(), from.get(), bytes); };
        }, 1);
}

} // namespace

void measure(const std::string& name, double bytesPerPixel, Prepare prepare, int threads)
{
    measureCopy(bytesPerPixel);
    for (ZeliSize size : kSizes) run(name, bytesPerPixel, size, prepare, threads);
}

template <class T>
Plane<T>::Plane(ZeliSize size, int channels)
    : step_((size.width * channels * int(sizeof(T)) + 63) & ~63),
      memory_(zelMalloc(std::uint64_t(step_) * std::uint64_t(size.height)), zelFree)
{
    unsigned state = 1;
    for (int y = 0; y < size.height; ++y)
        for (int x = 0; x < size.width * channels; ++x) {
            state = state * 1664525u + 1013904223u;
            row(y)[x] = T(60 + x / 24 % 40 + y / 16 % 40 + int(state >> 29));
        }
}

template class Plane<Zel8u>;
template class Plane<Zel8s>;
template class Plane<Zel16u>;
template class Plane<Zel16s>;
template class Plane<Zel32s>;
template class Plane<Zel32f>;
template class Plane<Zel64f>;

void require(ZelStatus status)
{
    if (status >= 0) return;
    std::fprintf(stderr, "a measured call failed: %s\n", zelGetStatusString(status));
    std::abort();
}

} // namespace zelbench

BENCHMARK_MAIN();

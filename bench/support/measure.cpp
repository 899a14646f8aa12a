#include "support/measure.h"

#include "support/count.h"

#include <benchmark/benchmark.h>

#include <cstdio>
#include <cstring>
#include <set>

namespace zelbench {
namespace {

constexpr ZeliSize kSmall = {96, 96};
constexpr ZeliSize kSizes[] = {kSmall, {640, 480}, {1920, 1080}, {3840, 2160}};

bool rowsTouch = false; // planes have no gaps between rows

std::vector<Call>& registered()
{
    static std::vector<Call> calls;
    return calls;
}

// memcpy of half of the bytes: as many are read as are written.
Call copy(double bytesPerPixel)
{
    char name[40];
    std::snprintf(name, sizeof name, "memcpy:%g", bytesPerPixel);
    return {name, bytesPerPixel, [bytesPerPixel](ZeliSize region) -> std::function<void()> {
                const auto bytes = std::size_t(bytesPerPixel * region.width * region.height / 2);
                std::shared_ptr<void> from(zelMalloc(bytes), zelFree), to(zelMalloc(bytes), zelFree);
                std::memset(from.get(), 1, bytes);
                return [=] { std::memcpy(to.get(), from.get(), bytes); };
            }, 1};
}

void registerBenchmark(const Call& call, ZeliSize size)
{
    benchmark::RegisterBenchmark((call.name + "/" + toString(size)).c_str(), [=](benchmark::State& state) {
        const auto work = prepare(call, size);
        for (auto _ : state) {
            work();
            benchmark::ClobberMemory();
        }
        state.counters["pixels"] = double(size.width) * size.height;
        state.counters["bytesPerPixel"] = call.bytesPerPixel;
    })->UseRealTime();
}

int measureTimes(int argc, char** argv)
{
    std::set<double> copies;
    for (const Call& call : registered()) {
        const bool first = copies.insert(call.bytesPerPixel).second;
        for (ZeliSize size : kSizes) {
            if (first) registerBenchmark(copy(call.bytesPerPixel), size);
            registerBenchmark(call, size);
        }
    }
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}

} // namespace

void measure(const std::string& name, double bytesPerPixel, Prepare prepare, int threads)
{
    registered().push_back({name, bytesPerPixel, prepare, threads});
}

std::string toString(ZeliSize size)
{
    return std::to_string(size.width) + "x" + std::to_string(size.height);
}

std::function<void()> prepare(const Call& call, ZeliSize size)
{
    rowsTouch = size.width == kSmall.width && size.height == kSmall.height;
    zelSetNumThreads(call.threads);
    return call.prepare(size);
}

template <class T>
Plane<T>::Plane(ZeliSize size, int channels)
    : step_(rowsTouch ? size.width * channels * int(sizeof(T)) : (size.width * channels * int(sizeof(T)) + 63) & ~63),
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

// zelcv_bench --count WIDTHxHEIGHT FILTER counts instructions; with options of Google Benchmark it measures times.
int main(int argc, char** argv)
{
    using namespace zelbench;
    ZeliSize size = {};
    if (argc == 4 && !std::strcmp(argv[1], "--count") && std::sscanf(argv[2], "%dx%d", &size.width, &size.height) == 2)
        return countInstructions(registered(), size, argv[3]);
    return measureTimes(argc, argv);
}

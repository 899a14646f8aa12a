#include "support/measure.h"

#include <vector>

using namespace zelbench;

namespace {

// A plane and the list of its rows.
template <class T>
struct RowList {
    Plane<std::remove_const_t<T>> plane;
    std::vector<T*> rows;
    RowList(const Plane<std::remove_const_t<T>>& owned, int count) : plane(owned)
    {
        for (int y = 0; y < count; ++y) rows.push_back(plane.row(y));
    }
};

template <class Tap>
std::vector<Tap> binomial(int taps)
{
    std::vector<Tap> kernel(1, Tap(1));
    while (int(kernel.size()) < taps) {
        kernel.push_back(0);
        for (std::size_t j = kernel.size() - 1; j > 0; --j) kernel[j] += kernel[j - 1];
    }
    return kernel;
}

// Kernels with larger taps than `gain` 1 has do not allow exact sums in single precision.
template <class S, class D, class Tap, class Function, class Size>
Prepare rowHalf(Function function, Size bufferSize, int channels, int taps, int divisor, Tap gain = 1)
{
    return [=](ZeliSize size) -> std::function<void()> {
        const Plane<S> src(size, channels);
        int bytes = 0;
        require(bufferSize(size, taps, &bytes));
        auto kernel = binomial<Tap>(taps);
        for (Tap& tap : kernel) tap *= gain;
        const S* values = src.data();
        return [=, list = RowList<D>(Plane<D>(size, channels), size.height), buffer = scratch(bytes)] {
            const auto call = [&](auto... last) {
                if constexpr (std::is_invocable_v<Function, const S*, int, D* const*, ZeliSize, const Tap*, int, int,
                                                  ZeliBorderType, S, decltype(last)...>)
                    return function(src.data(), src.step(), list.rows.data(), size, kernel.data(), taps, taps / 2,
                                    zeliBorderReflect, S(0), last...);
                else
                    return function(src.data(), src.step(), list.rows.data(), size, kernel.data(), taps, taps / 2,
                                    zeliBorderReflect, values, last...);
            };
            if constexpr (std::is_same_v<S, Zel32f>)
                require(call(buffer.get()));
            else
                require(call(divisor, buffer.get()));
        };
    };
}

template <class S, class D, class Tap, class Function, class Size>
Prepare columnHalf(Function function, Size bufferSize, int channels, int taps, int divisor, Tap gain = 1)
{
    return [=](ZeliSize size) -> std::function<void()> {
        const Plane<S> src({size.width, size.height + taps - 1}, channels);
        const Plane<D> dst(size, channels);
        int bytes = 0;
        require(bufferSize(size, taps, &bytes));
        auto kernel = binomial<Tap>(taps);
        for (Tap& tap : kernel) tap *= gain;
        return [=, list = RowList<const S>(src, size.height + taps - 1), buffer = scratch(bytes)] {
            if constexpr (std::is_same_v<S, Zel32f>)
                require(function(list.rows.data(), dst.data(), dst.step(), size, kernel.data(), taps, buffer.get()));
            else
                require(function(list.rows.data(), dst.data(), dst.step(), size, kernel.data(), taps, divisor,
                                 buffer.get()));
        };
    };
}

// Both halves, one row at a time through a ring of as many rows as there are taps; the image continues with its edge rows.
Prepare separable(int taps)
{
    return [=](ZeliSize size) -> std::function<void()> {
        const Plane<Zel8u> src(size);
        const Plane<Zel16s> ring({size.width, taps}), dst(size);
        const auto kernel = binomial<Zel16s>(taps);
        const ZeliSize row = {size.width, 1};
        int rowBytes = 0, columnBytes = 0;
        require(zeliFilterRowBorderPipelineGetBufferSize_8u16s_C1R(row, taps, &rowBytes));
        require(zeliFilterColumnPipelineGetBufferSize_16s_C1R(row, taps, &columnBytes));
        return [=, rowBuffer = scratch(rowBytes), columnBuffer = scratch(columnBytes)] {
            std::vector<const Zel16s*> rows(taps);
            const int above = taps / 2, below = taps - 1 - above;
            for (int made = 0, y = 0; y < size.height; ++y) {
                for (; made < size.height && made <= y + below; ++made) {
                    Zel16s* to[] = {ring.row(made % taps)};
                    require(zeliFilterRowBorderPipeline_8u16s_C1R(src.row(made), src.step(), to, row, kernel.data(), taps,
                                                                  taps / 2, zeliBorderReplicate, 0, 1, rowBuffer.get()));
                }
                for (int j = 0; j < taps; ++j) {
                    const int from = y - above + j;
                    rows[j] = ring.row((from < 0 ? 0 : from >= size.height ? size.height - 1 : from) % taps);
                }
                require(zeliFilterColumnPipeline_16s_C1R(rows.data(), dst.row(y), dst.step(), row, kernel.data(), taps, 16,
                                                         columnBuffer.get()));
            }
        };
    };
}

#define ROW(S, D, Tap, name, ...) \
    rowHalf<S, D, Tap>(zeliFilterRowBorderPipeline_##name, zeliFilterRowBorderPipelineGetBufferSize_##name, __VA_ARGS__)
#define COLUMN(S, D, Tap, name, ...) \
    columnHalf<S, D, Tap>(zeliFilterColumnPipeline_##name, zeliFilterColumnPipelineGetBufferSize_##name, __VA_ARGS__)

const bool registered = [] {
    const std::string row = "zeliFilterRowBorderPipeline_", column = "zeliFilterColumnPipeline_";
    measure(column + "16s_C1R/with_8u16s_rows_7x7", 3, separable(7));
    measure(column + "16s_C1R/with_8u16s_rows_3x3", 3, separable(3));
    for (int taps : {3, 5, 7, 9}) {
        const std::string length = std::to_string(taps) + "taps";
        measure(row + "8u16s_C1R/" + length, 3, ROW(Zel8u, Zel16s, Zel16s, 8u16s_C1R, 1, taps, 1));
        measure(column + "16s_C1R/" + length, 4, COLUMN(Zel16s, Zel16s, Zel16s, 16s_C1R, 1, taps, 16));
        measure(row + "32f_C1R/" + length, 8, ROW(Zel32f, Zel32f, Zel32f, 32f_C1R, 1, taps, 1));
        measure(column + "32f_C1R/" + length, 8, COLUMN(Zel32f, Zel32f, Zel32f, 32f_C1R, 1, taps, 1));
    }
    measure(row + "8u16s_C1R/divisor", 3, ROW(Zel8u, Zel16s, Zel16s, 8u16s_C1R, 1, 7, 3));
    measure(row + "8u16s_C3R", 9, ROW(Zel8u, Zel16s, Zel16s, 8u16s_C3R, 3, 7, 3));
    measure(row + "16s_C1R", 4, ROW(Zel16s, Zel16s, Zel16s, 16s_C1R, 1, 7, 64));
    measure(row + "16s_C1R/inexact", 4, ROW(Zel16s, Zel16s, Zel16s, 16s_C1R, 1, 7, 3));
    measure(row + "16s_C3R", 12, ROW(Zel16s, Zel16s, Zel16s, 16s_C3R, 3, 7, 3));
    measure(row + "Low_16s_C1R", 4, ROW(Zel16s, Zel16s, Zel16s, Low_16s_C1R, 1, 7, 16));
    measure(row + "Low_16s_C3R", 12, ROW(Zel16s, Zel16s, Zel16s, Low_16s_C3R, 3, 7, 16));
    measure(row + "32f_C3R", 24, ROW(Zel32f, Zel32f, Zel32f, 32f_C3R, 3, 7, 1));
    measure(column + "16s_C1R/inexact", 4, COLUMN(Zel16s, Zel16s, Zel16s, 16s_C1R, 1, 7, 16, 100));
    measure(column + "16s_C3R", 12, COLUMN(Zel16s, Zel16s, Zel16s, 16s_C3R, 3, 7, 16));
    measure(column + "16s8s_C1R", 3, COLUMN(Zel16s, Zel8s, Zel16s, 16s8s_C1R, 1, 7, 16));
    measure(column + "16s8s_C3R", 9, COLUMN(Zel16s, Zel8s, Zel16s, 16s8s_C3R, 3, 7, 16));
    measure(column + "16s8u_C1R", 3, COLUMN(Zel16s, Zel8u, Zel16s, 16s8u_C1R, 1, 7, 16));
    measure(column + "16s8u_C3R", 9, COLUMN(Zel16s, Zel8u, Zel16s, 16s8u_C3R, 3, 7, 16));
    measure(column + "Low_16s_C1R", 4, COLUMN(Zel16s, Zel16s, Zel16s, Low_16s_C1R, 1, 7, 16));
    measure(column + "Low_16s_C3R", 12, COLUMN(Zel16s, Zel16s, Zel16s, Low_16s_C3R, 3, 7, 16));
    measure(column + "32f_C3R", 24, COLUMN(Zel32f, Zel32f, Zel32f, 32f_C3R, 3, 7, 1));
    measure(row + "8u16s_C1R/2 threads", 3, ROW(Zel8u, Zel16s, Zel16s, 8u16s_C1R, 1, 7, 1), 2);
    measure(column + "16s_C1R/2 threads", 4, COLUMN(Zel16s, Zel16s, Zel16s, 16s_C1R, 1, 7, 16), 2);
    return true;
}();

} // namespace

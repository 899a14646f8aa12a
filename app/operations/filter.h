// The library's filters as operations from image to image. Members of a family that differ in type or layout only are one
// template here; the tables name the exported functions.
#pragma once

#include "operations/calls.h"

#include <algorithm>
#include <array>
#include <functional>
#include <span>

namespace app {

// ==== Filters of 3 by 3 and 5 by 5 with border ====

struct DerivativeOptions {
    ZeliMaskSize mask = zeliMask3x3; // Scharr filters have only this one
    ZeliBorderType border = zeliBorderReplicate;
    int divisor = 1; // 8s results only
};

template <class S, class D>
using Derivative = std::function<Image<D>(Calls&, View<const S>, const DerivativeOptions&)>;

// A filter, and the function that sizes its scratch. Scharr filters take no mask size, and only 8s results a divisor.
template <class S, class D, class Size, class Filter>
Derivative<S, D> maskFilter(Function<Size> size, Function<Filter> filter)
{
    return [=](Calls& calls, View<const S> src, const DerivativeOptions& options) {
        Image<D> dst(src.size, 1);
        const auto mask = onlyIf<std::is_invocable_v<Size*, ZeliSize, ZeliMaskSize, int*>>(options.mask);
        const Block buffer = std::apply([&](auto... m) { return calls.scratch(size, src.size, m...); }, mask);
        const auto arguments = std::tuple_cat(std::tuple(src.data, src.step, dst.data(), dst.step(), src.size), mask,
                                              std::tuple(options.border, S(0)),
                                              onlyIf<std::is_same_v<D, Zel8s>>(options.divisor), std::tuple(buffer.data()));
        std::apply([&](auto... a) { calls(filter, a...); }, arguments);
        return dst;
    };
}

inline ZeliMaskSize maskOfAperture(int aperture) { return aperture == 5 ? zeliMask5x5 : zeliMask3x3; }

// ==== Derivative filters ====

struct DerivativeFamily {
    const char* name;
    const char* meaning;
    bool hasMasks;  // 5 by 5 beside 3 by 3
    int weights[2]; // sum of the positive taps, 3 by 3 and 5 by 5: results lie within that many times 255
    Derivative<Zel8u, Zel16s> to16s;
    Derivative<Zel8u, Zel8s> to8s;
    Derivative<Zel32f, Zel32f> in32f;
};

// The eight filters, in the order of the header.
std::span<const DerivativeFamily> derivativeFamilies();
const DerivativeFamily& derivativeFamily(std::string_view name);

// The two first derivatives in the signs that Canny needs: dx grows to the right, dy downwards.
struct GradientFamilies {
    const DerivativeFamily &dx, &dy;
};
GradientFamilies gradientFamilies(bool scharr);

// ==== Row and column pipelines ====

// A separable kernel. `M` is the type of the rows between the two halves, and of the taps. 32f halves know no divisor.
template <class M>
struct Kernel {
    std::vector<M> row, column;
    int rowDivisor = 1, columnDivisor = 1;
    int rowAnchor = int(row.size()) / 2, columnAnchor = int(column.size()) / 2;
};

// What stands outside the picture.
template <class S>
struct Outside {
    ZeliBorderType border = zeliBorderReplicate;
    std::array<S, 3> value = {};
};

template <class S, class M>
using RowHalf = std::function<Image<M>(Calls&, View<const S>, const Kernel<M>&, const Outside<S>&)>;
template <class M, class D>
using ColumnHalf = std::function<Image<D>(Calls&, const std::vector<const M*>& rows, ZeliSize, const Kernel<M>&)>;

template <class S, class M>
struct RowHalves {
    RowHalf<S, M> gray, colour;
    const RowHalf<S, M>& of(int channels) const { return channels == 3 ? colour : gray; }
};
template <class M, class D>
struct ColumnHalves {
    ColumnHalf<M, D> gray, colour;
    const ColumnHalf<M, D>& of(int channels) const { return channels == 3 ? colour : gray; }
};

extern const RowHalves<Zel8u, Zel16s> kRows8u16s;
extern const RowHalves<Zel16s, Zel16s> kRows16s;
extern const RowHalves<Zel16s, Zel16s> kRowsLow16s;
extern const RowHalves<Zel32f, Zel32f> kRows32f;
extern const ColumnHalves<Zel16s, Zel8s> kColumns16s8s;
extern const ColumnHalves<Zel16s, Zel8u> kColumns16s8u;
extern const ColumnHalves<Zel16s, Zel16s> kColumns16s;
extern const ColumnHalves<Zel16s, Zel16s> kColumnsLow16s;
extern const ColumnHalves<Zel32f, Zel32f> kColumns32f;

// The row that stands in for row `y` of a picture of `height` rows; -1 where that is a row of the border value.
int borderRow(std::int64_t y, int height, ZeliBorderType border);

// Filters an image through both halves, with the same border on all four sides.
template <class S, class M, class D>
Image<D> separable(Calls& calls, const RowHalves<S, M>& rowHalves, const ColumnHalves<M, D>& columnHalves, View<const S> src,
                   const Kernel<M>& kernel, const Outside<S>& outside)
{
    const RowHalf<S, M>& filterRows = rowHalves.of(src.channels);
    const Image<M> rows = filterRows(calls, src, kernel, outside);

    // The row half makes the row that stands above and below under zeliBorderConstant, too.
    Image<S> outsideRow({src.size.width, 1}, src.channels);
    for (int i = 0; i < src.elements(); ++i) outsideRow.row(0)[i] = outside.value[std::size_t(i % src.channels)];
    const bool constant = outside.border == zeliBorderConstant && kernel.column.size() > 1;
    const Image<M> filteredOutside = constant ? filterRows(calls, outsideRow, kernel, outside) : Image<M>({1, 1}, 1);

    std::vector<const M*> list(std::size_t(src.size.height) + kernel.column.size() - 1);
    for (std::size_t i = 0; i < list.size(); ++i) {
        const int y = borderRow(std::int64_t(i) - kernel.columnAnchor, src.size.height, outside.border);
        list[i] = y < 0 ? filteredOutside.row(0) : rows.row(y);
    }
    return columnHalves.of(src.channels)(calls, list, src.size, kernel);
}

} // namespace app

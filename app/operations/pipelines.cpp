// The halves of separable filters by type, and the border above and below.
#include "operations/filter.h"

namespace app {

namespace {

template <class S, class M, int Channels, class Size, class Filter>
RowHalf<S, M> rowHalf(Function<Size> size, Function<Filter> filter)
{
    return [=](Calls& calls, View<const S> src, const Kernel<M>& kernel, const Outside<S>& outside) {
        Image<M> dst(src.size, Channels);
        std::vector<M*> rows(std::size_t(src.size.height));
        for (int y = 0; y < src.size.height; ++y) rows[std::size_t(y)] = dst.row(y);
        const int taps = int(kernel.row.size());
        const Block buffer = calls.scratch(size, src.size, taps);
        const auto value = [&] {
            if constexpr (Channels == 3)
                return outside.value.data();
            else
                return outside.value[0];
        }();
        const auto arguments = std::tuple_cat(std::tuple(src.data, src.step, rows.data(), src.size, kernel.row.data(), taps,
                                                         kernel.rowAnchor, outside.border, value),
                                              onlyIf<std::is_integral_v<M>>(kernel.rowDivisor), std::tuple(buffer.data()));
        std::apply([&](auto... a) { calls(filter, a...); }, arguments);
        return dst;
    };
}

template <class M, class D, int Channels, class Size, class Filter>
ColumnHalf<M, D> columnHalf(Function<Size> size, Function<Filter> filter)
{
    return [=](Calls& calls, const std::vector<const M*>& rows, ZeliSize roi, const Kernel<M>& kernel) {
        Image<D> dst(roi, Channels);
        const int taps = int(kernel.column.size());
        const Block buffer = calls.scratch(size, roi, taps);
        const auto arguments =
            std::tuple_cat(std::tuple(rows.data(), dst.data(), dst.step(), roi, kernel.column.data(), taps),
                           onlyIf<std::is_integral_v<M>>(kernel.columnDivisor), std::tuple(buffer.data()));
        std::apply([&](auto... a) { calls(filter, a...); }, arguments);
        return dst;
    };
}

} // namespace

const RowHalves<Zel8u, Zel16s> kRows8u16s = {
    rowHalf<Zel8u, Zel16s, 1>(ZELCV_FUNCTION(zeliFilterRowBorderPipelineGetBufferSize_8u16s_C1R),
                              ZELCV_FUNCTION(zeliFilterRowBorderPipeline_8u16s_C1R)),
    rowHalf<Zel8u, Zel16s, 3>(ZELCV_FUNCTION(zeliFilterRowBorderPipelineGetBufferSize_8u16s_C3R),
                              ZELCV_FUNCTION(zeliFilterRowBorderPipeline_8u16s_C3R))};
const RowHalves<Zel16s, Zel16s> kRows16s = {
    rowHalf<Zel16s, Zel16s, 1>(ZELCV_FUNCTION(zeliFilterRowBorderPipelineGetBufferSize_16s_C1R),
                               ZELCV_FUNCTION(zeliFilterRowBorderPipeline_16s_C1R)),
    rowHalf<Zel16s, Zel16s, 3>(ZELCV_FUNCTION(zeliFilterRowBorderPipelineGetBufferSize_16s_C3R),
                               ZELCV_FUNCTION(zeliFilterRowBorderPipeline_16s_C3R))};
const RowHalves<Zel16s, Zel16s> kRowsLow16s = {
    rowHalf<Zel16s, Zel16s, 1>(ZELCV_FUNCTION(zeliFilterRowBorderPipelineGetBufferSize_Low_16s_C1R),
                               ZELCV_FUNCTION(zeliFilterRowBorderPipeline_Low_16s_C1R)),
    rowHalf<Zel16s, Zel16s, 3>(ZELCV_FUNCTION(zeliFilterRowBorderPipelineGetBufferSize_Low_16s_C3R),
                               ZELCV_FUNCTION(zeliFilterRowBorderPipeline_Low_16s_C3R))};
const RowHalves<Zel32f, Zel32f> kRows32f = {
    rowHalf<Zel32f, Zel32f, 1>(ZELCV_FUNCTION(zeliFilterRowBorderPipelineGetBufferSize_32f_C1R),
                               ZELCV_FUNCTION(zeliFilterRowBorderPipeline_32f_C1R)),
    rowHalf<Zel32f, Zel32f, 3>(ZELCV_FUNCTION(zeliFilterRowBorderPipelineGetBufferSize_32f_C3R),
                               ZELCV_FUNCTION(zeliFilterRowBorderPipeline_32f_C3R))};

const ColumnHalves<Zel16s, Zel8s> kColumns16s8s = {
    columnHalf<Zel16s, Zel8s, 1>(ZELCV_FUNCTION(zeliFilterColumnPipelineGetBufferSize_16s8s_C1R),
                                 ZELCV_FUNCTION(zeliFilterColumnPipeline_16s8s_C1R)),
    columnHalf<Zel16s, Zel8s, 3>(ZELCV_FUNCTION(zeliFilterColumnPipelineGetBufferSize_16s8s_C3R),
                                 ZELCV_FUNCTION(zeliFilterColumnPipeline_16s8s_C3R))};
const ColumnHalves<Zel16s, Zel8u> kColumns16s8u = {
    columnHalf<Zel16s, Zel8u, 1>(ZELCV_FUNCTION(zeliFilterColumnPipelineGetBufferSize_16s8u_C1R),
                                 ZELCV_FUNCTION(zeliFilterColumnPipeline_16s8u_C1R)),
    columnHalf<Zel16s, Zel8u, 3>(ZELCV_FUNCTION(zeliFilterColumnPipelineGetBufferSize_16s8u_C3R),
                                 ZELCV_FUNCTION(zeliFilterColumnPipeline_16s8u_C3R))};
const ColumnHalves<Zel16s, Zel16s> kColumns16s = {
    columnHalf<Zel16s, Zel16s, 1>(ZELCV_FUNCTION(zeliFilterColumnPipelineGetBufferSize_16s_C1R),
                                  ZELCV_FUNCTION(zeliFilterColumnPipeline_16s_C1R)),
    columnHalf<Zel16s, Zel16s, 3>(ZELCV_FUNCTION(zeliFilterColumnPipelineGetBufferSize_16s_C3R),
                                  ZELCV_FUNCTION(zeliFilterColumnPipeline_16s_C3R))};
const ColumnHalves<Zel16s, Zel16s> kColumnsLow16s = {
    columnHalf<Zel16s, Zel16s, 1>(ZELCV_FUNCTION(zeliFilterColumnPipelineGetBufferSize_Low_16s_C1R),
                                  ZELCV_FUNCTION(zeliFilterColumnPipeline_Low_16s_C1R)),
    columnHalf<Zel16s, Zel16s, 3>(ZELCV_FUNCTION(zeliFilterColumnPipelineGetBufferSize_Low_16s_C3R),
                                  ZELCV_FUNCTION(zeliFilterColumnPipeline_Low_16s_C3R))};
const ColumnHalves<Zel32f, Zel32f> kColumns32f = {
    columnHalf<Zel32f, Zel32f, 1>(ZELCV_FUNCTION(zeliFilterColumnPipelineGetBufferSize_32f_C1R),
                                  ZELCV_FUNCTION(zeliFilterColumnPipeline_32f_C1R)),
    columnHalf<Zel32f, Zel32f, 3>(ZELCV_FUNCTION(zeliFilterColumnPipelineGetBufferSize_32f_C3R),
                                  ZELCV_FUNCTION(zeliFilterColumnPipeline_32f_C3R))};

int borderRow(std::int64_t y, int height, ZeliBorderType border)
{
    if (y >= 0 && y < height) return int(y);
    const auto wrapped = [&](std::int64_t period) { return ((y % period) + period) % period; };
    switch (border) {
    case zeliBorderReplicate:
        return y < 0 ? 0 : height - 1;
    case zeliBorderWrap:
        return int(wrapped(height));
    case zeliBorderReflect: {
        if (height == 1) return 0;
        const std::int64_t period = 2 * std::int64_t(height) - 2, i = wrapped(period);
        return int(std::min(i, period - i));
    }
    case zeliBorderReflectEdge: {
        const std::int64_t period = 2 * std::int64_t(height), i = wrapped(period);
        return int(std::min(i, period - 1 - i));
    }
    default:
        return -1;
    }
}

} // namespace app

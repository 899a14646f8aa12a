// zelcv filter: a separable kernel from the command line, through the row and the column pipeline.
#include "commands/borders.h"
#include "commands/commands.h"
#include "operations/filter.h"

#include <charconv>
#include <limits>
#include <numeric>

namespace app {

namespace {

struct Options {
    InputAndOutput files;
    std::string row, column, border = "replicate";
    double divisor = 0;
    int anchor = 0, value = 0;
    bool inFloat = false, aroundZero = false;
    CLI::Option *divisorGiven = nullptr, *anchorGiven = nullptr;
};

template <class M>
std::vector<M> parseTaps(const char* option, const std::string& text)
{
    std::vector<M> taps;
    for (std::size_t start = 0; start <= text.size();) {
        const std::size_t end = std::min(text.find(',', start), text.size());
        const std::string word = text.substr(start, end - start);
        M tap = 0;
        const auto [rest, error] = std::from_chars(word.data(), word.data() + word.size(), tap);
        if (word.empty() || error != std::errc() || rest != word.data() + word.size() || !std::isfinite(double(tap)))
            throw UsageError(std::string(option) + ": '" + word + "' is not " +
                             (std::is_integral_v<M> ? "an integer of 16 bits (--float takes decimals)" : "a number"));
        taps.push_back(tap);
        start = end + 1;
    }
    return taps;
}

template <class M>
Kernel<M> parseKernel(const Options& options)
{
    Kernel<M> kernel{parseTaps<M>("--row", options.row), parseTaps<M>(options.column.empty() ? "--row" : "--column",
                                                                      options.column.empty() ? options.row : options.column)};
    if (!options.anchorGiven->empty()) {
        const std::size_t fewest = std::min(kernel.row.size(), kernel.column.size());
        if (options.anchor < 0 || std::size_t(options.anchor) >= fewest)
            throw Error("anchor " + std::to_string(options.anchor) + " lies outside a kernel of " + std::to_string(fewest) +
                        " taps, which are counted from 0");
        kernel.rowAnchor = kernel.columnAnchor = options.anchor;
    }
    return kernel;
}

// What a user expects of a kernel without a divisor: the brightness stays, or, where the taps sum up to zero, nothing is
// scaled.
template <class Sum, class M>
Sum sumOrOne(const std::vector<M>& taps)
{
    const Sum sum = std::accumulate(taps.begin(), taps.end(), Sum(0));
    return sum == 0 ? Sum(1) : sum;
}

// Divides a whole divisor among the halves. The rows between them hold 16 bits: the row half takes as little as keeps its
// results from being cut to 32767, and with it the fraction that is lost there.
void divideDivisor(Kernel<Zel16s>& kernel, std::int64_t whole)
{
    constexpr std::int64_t limit = std::numeric_limits<int>::max();
    const std::int64_t strongest = std::accumulate(kernel.row.begin(), kernel.row.end(), std::int64_t(0),
                                                   [](std::int64_t sum, Zel16s tap) { return sum + 255 * std::abs(tap); });
    if (strongest > limit) throw Error("the row taps are so large that their sum does not fit 32 bits");
    const std::int64_t needed = std::max<std::int64_t>(1, (strongest + 32766) / 32767);
    const std::int64_t size = std::abs(whole);
    std::int64_t rest = std::clamp<std::int64_t>(size / needed, 1, limit);
    while (size % rest != 0) --rest;
    if (size / rest > limit) throw Error("the divisor " + std::to_string(whole) + " is too large");
    kernel.rowDivisor = int(size / rest);
    kernel.columnDivisor = int(whole < 0 ? -rest : rest);
}

template <class S>
Outside<S> outsideOf(const Options& options)
{
    const S value = S(options.value);
    return {borderNamed(options.border), {value, value, value}};
}

Picture filterInIntegers(const Options& options, const Picture& src)
{
    Kernel<Zel16s> kernel = parseKernel<Zel16s>(options);
    if (options.divisor != std::trunc(options.divisor) || std::fabs(options.divisor) > std::numeric_limits<int>::max())
        throw UsageError("--divisor must be an integer of 32 bits (--float takes decimals)");
    divideDivisor(kernel, options.divisorGiven->empty()
                              ? sumOrOne<std::int64_t>(kernel.row) * sumOrOne<std::int64_t>(kernel.column)
                              : std::int64_t(options.divisor));
    Calls calls;
    const Outside<Zel8u> outside = outsideOf<Zel8u>(options);
    if (options.aroundZero) return aroundGray(separable(calls, kRows8u16s, kColumns16s, src.view(), kernel, outside), 127);
    return separable(calls, kRows8u16s, kColumns16s8u, src.view(), kernel, outside);
}

Picture filterInFloat(const Options& options, const Picture& src)
{
    Kernel<Zel32f> kernel = parseKernel<Zel32f>(options);
    const double divisor =
        options.divisorGiven->empty() ? sumOrOne<double>(kernel.row) * sumOrOne<double>(kernel.column) : options.divisor;
    for (Zel32f& tap : kernel.column) tap = Zel32f(tap / divisor);
    Calls calls;
    const Image<Zel32f> result =
        separable(calls, kRows32f, kColumns32f, convert<Zel32f>(src).view(), kernel, outsideOf<Zel32f>(options));
    return options.aroundZero ? aroundGray(result, 127) : brightness(result);
}

void run(const Options& options)
{
    if (!options.divisorGiven->empty() && options.divisor == 0) throw Error("the divisor must not be 0");
    const Picture src = options.files.read();
    writePng(options.files.out, options.inFloat ? filterInFloat(options, src) : filterInIntegers(options, src));
}

} // namespace

void addFilterCommand(CLI::App& program)
{
    CLI::App* command = program.add_subcommand("filter", "Filter with a separable kernel: taps along the rows, then taps "
                                                         "down the columns. Colour is filtered channel by channel");
    const auto options = std::make_shared<Options>();
    options->files.addTo(*command);
    command->add_option("--row", options->row, "Taps along the rows, such as 1,4,6,4,1")->required()->type_name("TAPS");
    command->add_option("--column", options->column, "Taps down the columns (default: the row taps)")->type_name("TAPS");
    options->divisorGiven = command
                                ->add_option("--divisor", options->divisor,
                                             "What the sum over all taps is divided by (default: the sum of the row taps "
                                             "times the sum of the column taps, where a "
                                             "sum of 0 counts as 1)")
                                ->type_name("N");
    options->anchorGiven =
        command
            ->add_option("--anchor", options->anchor,
                         "The tap that lies on the pixel, counted from 0, in both directions (default: the middle)")
            ->type_name("N");
    command
        ->add_option("--border", options->border,
                     "What stands outside the picture: constant, replicate, wrap, reflect or reflect-edge")
        ->type_name("KIND")
        ->capture_default_str();
    command->add_option("--value", options->value, "The value outside with --border constant, 0 to 255")
        ->check(CLI::Range(0, 255))
        ->capture_default_str();
    command->add_flag("--float", options->inFloat, "Compute in single precision; taps and divisor may have decimals");
    command->add_flag("--signed", options->aroundZero,
                      "Show results around middle gray, for kernels that give negative ones");
    command->callback([=] { run(*options); });
}

} // namespace app

// One file: nothing from elsewhere, and no script but one that opens what a link leads into.
#include "gallery/page.h"

#include <algorithm>
#include <cmath>
#include <cstdarg>
#include <cstdio>
#include <set>

namespace app {

namespace {

const char* const kStyle = R"(
:root { color-scheme: light dark; --paper: #faf9f7; --card: #fff; --ink: #22252a; --faint: #6b7078; --line: #e2e0dc;
  --mark: #b4532a; }
@media (prefers-color-scheme: dark) {
  :root { --paper: #16181b; --card: #1e2125; --ink: #e6e4e0; --faint: #9a9fa6; --line: #31353a; --mark: #f0a070; }
}
* { box-sizing: border-box; }
html { -webkit-text-size-adjust: 100%; }
body { margin: 0; background: var(--paper); color: var(--ink); font: 1rem/1.5 system-ui, sans-serif; }
main, header, footer { max-width: 84rem; margin: 0 auto; padding: 0 clamp(1rem, 4vw, 2.5rem); }
header { padding-top: clamp(1.5rem, 5vw, 3.5rem); }
h1 { font-size: clamp(1.7rem, 5vw, 2.6rem); line-height: 1.15; margin: 0 0 .3rem; letter-spacing: -.02em;
  overflow-wrap: anywhere; }
h2 { font-size: 1.8rem; margin: 3.6rem 0 .2rem; padding-top: 1.2rem; border-top: 1px solid var(--line);
  letter-spacing: -.01em; }
h3 { font-size: 1.25rem; margin: 2.2rem 0 .2rem; }
h4 { font-size: 1rem; margin: 0; }
h2, h3, figure { scroll-margin-top: 1rem; }
p { margin: .25rem 0; max-width: 46rem; }
a { color: var(--mark); text-underline-offset: .15em; }
.faint, figcaption p { color: var(--faint); }
nav { margin-top: 1.4rem; display: grid; grid-template-columns: max-content 1fr; gap: .5rem 1.4rem; align-items: baseline; }
nav ul { display: flex; flex-wrap: wrap; gap: .4rem; padding: 0; margin: 0; list-style: none; }
nav a { color: var(--ink); text-decoration: none; }
nav > a { font-weight: 600; grid-column: 1; }
nav li a, summary { display: inline-block; padding: .25rem .8rem; border: 1px solid var(--line); border-radius: 2rem;
  background: var(--card); font-size: .9rem; }
nav a:hover, summary:hover { border-color: var(--mark); color: var(--mark); }
@media (max-width: 36rem) { nav { display: block; } nav > a { display: block; margin: .8rem 0 .3rem; } }
.grid { display: grid; grid-auto-flow: dense; gap: 1.2rem; margin-top: 1.1rem;
  grid-template-columns: repeat(auto-fill, minmax(min(100%, 19rem), 1fr)); }
figure { margin: 0; background: var(--card); border: 1px solid var(--line); border-radius: .7rem; overflow: hidden; }
figure:target { border-color: var(--mark); box-shadow: 0 0 0 2px var(--mark); }
figure.all { grid-column: 1 / -1; max-width: 48rem; }
@media (min-width: 46rem) { figure.two { grid-column: span 2; } }
figure img, figure svg { display: block; width: 100%; height: auto; }
figure img.small { image-rendering: pixelated; }
svg rect { fill: var(--mark); }
svg line { stroke: var(--faint); stroke-width: .5; }
figcaption { padding: .7rem .9rem .9rem; font-size: .9rem; }
code { font: .8rem/1.4 ui-monospace, monospace; overflow-wrap: anywhere; }
figcaption code { display: block; }
.functions { columns: 16rem; }
figcaption .time { color: var(--ink); font-variant-numeric: tabular-nums; }
.scroll { overflow-x: auto; }
details > .scroll { border: 1px solid var(--line); border-radius: .7rem; background: var(--card);
  margin-top: 1rem; }
table { border-collapse: collapse; width: 100%; font-size: .9rem; font-variant-numeric: tabular-nums; }
th, td { padding: .35rem .9rem; text-align: right; white-space: nowrap; border-top: 1px solid var(--line); }
th { border-top: 0; font-weight: 600; color: var(--faint); }
th:first-child, td:first-child { text-align: left; }
td a { text-decoration: none; }
figure table { font-size: .82rem; }
figure th, figure td { padding: .2rem .9rem .2rem 0; }
figure th:first-child, figure td:first-child { padding-left: .9rem; }
summary { cursor: pointer; margin-top: 1rem; list-style: none; }
summary::-webkit-details-marker { display: none; }
summary::before { content: "+ "; }
details[open] > summary::before { content: "\2212 "; }
footer { padding-top: 2rem; padding-bottom: 3rem; font-size: .9rem; }
)";

// Browsers of some age do not open by themselves what a link leads into.
const char* const kScript = R"(
const reveal = link => {
  const place = link.hash && document.getElementById(link.hash.slice(1));
  const folded = place && place.closest("details");
  if (folded) folded.open = true;
  return place;
};
document.addEventListener("click", event => {
  const link = event.target.closest("a");
  if (link) reveal(link);
});
const place = reveal(location);
if (place) place.scrollIntoView();
)";

std::string escaped(const std::string& text)
{
    std::string result;
    for (const char c : text) switch (c) {
        case '&':
            result += "&amp;";
            break;
        case '<':
            result += "&lt;";
            break;
        case '>':
            result += "&gt;";
            break;
        case '"':
            result += "&quot;";
            break;
        default:
            result += c;
        }
    return result;
}

[[gnu::format(printf, 1, 2)]] std::string format(const char* pattern, ...)
{
    char text[512];
    va_list arguments;
    va_start(arguments, pattern);
    std::vsnprintf(text, sizeof text, pattern, arguments);
    va_end(arguments);
    return text;
}

double pixels(ZeliSize size) { return double(size.width) * size.height; }

// "0.412 ms, 1.34 ns per pixel of 640 x 480", or the time alone where there are no pixels.
std::string timeText(double nanoseconds, ZeliSize size)
{
    const std::string time = nanoseconds < 1e4 ? format("%.0f ns", nanoseconds) : format("%.3g ms", nanoseconds / 1e6);
    if (pixels(size) == 0) return time;
    return time + format(", %.2f ns per pixel of %s", nanoseconds / pixels(size), sizeText(size).c_str());
}

std::string barPlot(const std::vector<double>& values)
{
    constexpr double width = 320, height = 120, edge = 10;
    const auto [low, high] = std::minmax_element(values.begin(), values.end());
    const double bottom = std::min(0.0, *low), range = std::max(std::max(0.0, *high) - bottom, 1e-30);
    const auto y = [&](double value) { return edge + (height - 2 * edge) * (1 - (value - bottom) / range); };
    std::string svg = format("<svg viewBox=\"0 0 %g %g\" role=\"img\" aria-label=\"%zu taps from %g to %g\">", width, height,
                             values.size(), *low, *high);
    const double pitch = (width - 2 * edge) / double(values.size());
    for (std::size_t i = 0; i < values.size(); ++i)
        svg += format("<rect x=\"%.2f\" y=\"%.2f\" width=\"%.2f\" height=\"%.2f\"/>", edge + pitch * (double(i) + 0.1),
                      std::min(y(values[i]), y(0)), 0.8 * pitch, std::fabs(y(values[i]) - y(0)));
    return svg + format("<line x1=\"0\" x2=\"%g\" y1=\"%.2f\" y2=\"%.2f\"/></svg>\n", width, y(0), y(0));
}

// The taps themselves, where they are few.
std::string tapList(const std::vector<double>& values)
{
    if (values.size() > 15)
        return "From " + format("%.6g to %.6g.", *std::min_element(values.begin(), values.end()),
                                *std::max_element(values.begin(), values.end()));
    std::string text;
    for (const double value : values) text += format(text.empty() ? "%.6g" : ", %.6g", value);
    return text;
}

std::string tableHtml(const Table& table)
{
    std::string html = "<div class=\"scroll\"><table>\n<tr><th></th>";
    for (const std::string& column : table.columns) html += "<th>" + escaped(column) + "</th>";
    html += "</tr>\n";
    for (const Table::Row& row : table.rows) {
        html += "<tr><td>" + escaped(row.name) + "</td>";
        for (const std::string& cell : row.cells) html += "<td>" + escaped(cell) + "</td>";
        html += "</tr>\n";
    }
    return html + "</table></div>\n";
}

std::string figureHtml(const Figure& figure, const Drawn& drawn, const std::string& id)
{
    const char* const widths[] = {"", " class=\"two\"", " class=\"all\""};
    std::string html = "<figure id=\"" + id + "\"" + widths[int(figure.width)] + ">\n";
    if (!drawn.plot.empty()) html += barPlot(drawn.plot);
    if (!drawn.file.empty())
        html += "<a href=\"" + drawn.file + "\"><img src=\"" + drawn.file + "\" alt=\"" + escaped(figure.title) +
                "\" loading=\"lazy\"" + (drawn.size.width < 200 ? " class=\"small\"" : "") +
                format(" width=\"%d\" height=\"%d\"></a>\n", drawn.size.width, drawn.size.height);
    if (!drawn.table.rows.empty()) html += tableHtml(drawn.table);
    const std::string text = drawn.plot.empty() ? figure.sentence : tapList(drawn.plot);
    if (text.empty()) return html + "</figure>\n";
    html += "<figcaption>\n<h4>" + escaped(figure.title) + "</h4>\n<p>" + escaped(text) + "</p>\n";
    if (drawn.functions.empty()) return html + "</figcaption>\n</figure>\n";
    html += "<div class=\"functions\">\n";
    for (const std::string& function : drawn.functions) html += "<code>" + function + "</code>\n";
    return html + "</div>\n<p class=\"time\">" + timeText(drawn.nanoseconds, drawn.worked) +
           "</p>\n</figcaption>\n</figure>\n";
}

// The functions that the filter accepts, one in a row, below a title that tells how many they are.
template <class Accept>
std::string functionTable(const std::string& title, const std::map<std::string, FunctionTimes>& functions, Accept accept)
{
    int count = 0;
    std::string rows;
    for (const auto& [name, times] : functions) {
        if (!accept(name, times)) continue;
        ++count;
        const double time = median(times.nanoseconds), area = pixels(times.size);
        const bool perPixel = area > 0 && !isSizeFunction(name);
        rows += "<tr><td><a href=\"#" + times.figure + "\"><code>" + name + "</code></a></td><td>" +
                (area > 0 ? sizeText(times.size) : "") + "</td><td>" +
                (perPixel ? format("%.4f ms</td><td>%.3f ns", time / 1e6, time / area) : format("%.0f ns</td><td>", time)) +
                "</td></tr>\n";
    }
    if (count == 0) return "";
    return "<details>\n<summary>" + title + ": " + std::to_string(count) +
           " functions</summary>\n<div class=\"scroll\"><table>\n<tr><th>Function</th><th>Region</th><th>Median time</th>"
           "<th>Per pixel</th></tr>\n" +
           rows + "</table></div>\n</details>\n";
}

// Chapters, and the sections of each.
std::string contentsHtml(const std::vector<Chapter>& chapters)
{
    std::string html = "<nav aria-label=\"Contents\">\n";
    for (const Chapter& chapter : chapters) {
        html += "<a href=\"#" + chapter.id + "\">" + chapter.title + "</a>\n<ul>";
        for (const Section& section : chapter.sections)
            if (!section.title.empty()) html += "<li><a href=\"#" + section.id + "\">" + section.title + "</a></li>";
        html += "</ul>\n";
    }
    return html + "<a href=\"#functions\">All functions</a>\n</nav>\n";
}

std::string sectionHtml(const Section& section, const std::map<std::string, Drawn>& figures)
{
    std::string html = "<section>\n";
    if (!section.title.empty()) html += "<h3 id=\"" + section.id + "\">" + section.title + "</h3>\n";
    if (!section.introduction.empty()) html += "<p class=\"faint\">" + section.introduction + "</p>\n";
    if (section.folded) html += "<details>\n<summary>" + std::to_string(section.figures.size()) + " figures</summary>\n";
    html += "<div class=\"grid\">\n";
    for (std::size_t i = 0; i < section.figures.size(); ++i) {
        const std::string id = figureId(section, i);
        html += figureHtml(section.figures[i], figures.at(id), id);
    }
    return html + (section.folded ? "</div>\n</details>\n</section>\n" : "</div>\n</section>\n");
}

// All functions, by the chapter that shows them; those that only size memory by themselves.
std::string functionsHtml(const GalleryPage& page)
{
    std::string html = "<h2 id=\"functions\">All functions</h2>\n<p class=\"faint\">What one call took on the largest region "
                       "that it was used for on this page. The names lead to a figure.</p>\n";
    for (const Chapter& chapter : page.chapters) {
        std::set<std::string> figures;
        for (const Section& section : chapter.sections)
            for (std::size_t i = 0; i < section.figures.size(); ++i) figures.insert(figureId(section, i));
        html += functionTable(chapter.title, page.functions, [&](const std::string& name, const FunctionTimes& times) {
            return !isSizeFunction(name) && figures.contains(times.figure);
        });
    }
    return html + functionTable("How much scratch memory others need", page.functions,
                                [](const std::string& name, const FunctionTimes&) { return isSizeFunction(name); });
}

} // namespace

std::string galleryHtml(const GalleryPage& page)
{
    Zel32s threads = 0;
    zelGetNumThreads(&threads);
    const std::string heading = escaped(page.heading);
    std::string html =
        "<!DOCTYPE html>\n<html lang=\"en\">\n<head>\n<meta charset=\"utf-8\">\n"
        "<meta name=\"viewport\" content=\"width=device-width, initial-scale=1\">\n<title>" +
        heading + " through zelcv</title>\n<style>" + kStyle + "</style>\n</head>\n<body>\n<header>\n<h1>" + heading +
        "</h1>\n<p class=\"faint\">" + escaped(page.origin) +
        " Everything below was made from it by zelcv, with the functions named under each figure. Times are medians "
        "of a few calls on " +
        std::to_string(threads) + (threads == 1 ? " thread" : " threads") +
        ". A click on a picture shows it in full size.</p>\n" + contentsHtml(page.chapters) + "</header>\n<main>\n";
    for (const Chapter& chapter : page.chapters) {
        html += "<h2 id=\"" + chapter.id + "\">" + chapter.title + "</h2>\n";
        for (const Section& section : chapter.sections) html += sectionHtml(section, page.figures);
    }
    html += functionsHtml(page);
    html += "</main>\n<footer class=\"faint\">\n<p>Made by zelcv, version " + escaped(zelcvGetLibVersion()->version) +
            ", variant " + page.variant + ": " + std::to_string(page.functions.size()) +
            " functions and <code>zelcvGetLibVersion</code> at work.</p>\n</footer>\n<script>" + kScript +
            "</script>\n</body>\n</html>\n";
    return html;
}

} // namespace app

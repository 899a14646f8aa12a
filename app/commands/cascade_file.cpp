#include "commands/cascade_file.h"

#include "pictures/files.h"

#include <charconv>
#include <cmath>
#include <sstream>

namespace app {

namespace {

constexpr int kLargestWindow = 256;

class Parser {
public:
    explicit Parser(const std::string& path) : path_(path) {}

    Cascade parse()
    {
        std::istringstream text(readFile(path_));
        for (std::string line; std::getline(text, line);) {
            ++line_;
            std::istringstream stream(line.substr(0, line.find('#')));
            words_.clear();
            for (std::string word; stream >> word;) words_.push_back(word);
            if (!words_.empty()) statement();
        }
        finishStage();
        if (cascade_.stages.empty()) fail("the file ends before the first stage");
        return std::move(cascade_);
    }

private:
    [[noreturn]] void fail(const std::string& what) const
    {
        throw Error(path_ + ": line " + std::to_string(line_) + ": " + what);
    }

    // The statement's numbers, of which there must be so many.
    template <class T>
    std::vector<T> numbers(std::size_t count, const char* form) const
    {
        if (words_.size() != count + 1) fail(std::string("expected: ") + form);
        std::vector<T> values;
        for (std::size_t i = 1; i < words_.size(); ++i) {
            const std::string& word = words_[i];
            T value{};
            const auto [end, error] = std::from_chars(word.data(), word.data() + word.size(), value);
            if (error != std::errc() || end != word.data() + word.size() || !std::isfinite(double(value)))
                fail("argument " + std::to_string(i) + " is not a number of the kind in: " + form);
            values.push_back(value);
        }
        return values;
    }

    void statement()
    {
        const std::string& word = words_[0];
        if (word == "window")
            window();
        else if (cascade_.window.width == 0)
            fail("the first statement must be: window WIDTH HEIGHT");
        else if (word == "contrast")
            cascade_.contrast = numbers<float>(1, "contrast DEVIATION")[0];
        else if (word == "stage")
            stage();
        else if (word == "feature")
            feature();
        else if (word == "rect")
            rect();
        else
            fail("statements are window, contrast, stage, feature and rect");
    }
    void window()
    {
        const auto size = numbers<int>(2, "window WIDTH HEIGHT");
        if (cascade_.window.width != 0) fail("the window is given twice");
        if (size[0] < 2 || size[1] < 2 || size[0] > kLargestWindow || size[1] > kLargestWindow)
            fail("a window has 2 to " + std::to_string(kLargestWindow) + " pixels each way");
        cascade_.window = {size[0], size[1]};
    }
    void stage()
    {
        const float threshold = numbers<float>(1, "stage THRESHOLD")[0];
        finishStage();
        cascade_.stages.emplace_back().threshold = threshold;
    }
    void feature()
    {
        const auto values = numbers<float>(3, "feature THRESHOLD BELOW OTHERWISE");
        if (cascade_.stages.empty()) fail("a feature stands before the first stage");
        finishFeature();
        Stage& stage = cascade_.stages.back();
        stage.thresholds.push_back(values[0]);
        stage.values1.push_back(values[1]);
        stage.values2.push_back(values[2]);
        stage.rectCounts.push_back(0);
    }
    void rect()
    {
        if (words_.size() != 6) fail("expected: rect X Y WIDTH HEIGHT WEIGHT");
        const std::string last = words_.back();
        words_.pop_back();
        const auto place = numbers<int>(4, "rect X Y WIDTH HEIGHT WEIGHT");
        words_ = {"weight", last};
        const float weight = numbers<float>(1, "rect X Y WIDTH HEIGHT WEIGHT")[0];
        if (cascade_.stages.empty() || cascade_.stages.back().rectCounts.empty())
            fail("a rect stands before the first feature");
        const ZeliRect rect{place[0], place[1], place[2], place[3]};
        const ZeliSize window = cascade_.window;
        if (rect.x < 0 || rect.y < 0 || rect.width < 1 || rect.height < 1 || rect.x > window.width - rect.width ||
            rect.y > window.height - rect.height)
            fail("the rect is empty or reaches out of the window of " + sizeText(window));
        Stage& stage = cascade_.stages.back();
        stage.rects.push_back(rect);
        stage.weights.push_back(weight / float(rect.width * rect.height)); // of a mean, where the library has sums
        ++stage.rectCounts.back();
    }
    void finishFeature() const
    {
        const Stage& stage = cascade_.stages.back();
        if (!stage.rectCounts.empty() && stage.rectCounts.back() == 0) fail("the feature before has no rect");
    }
    void finishStage() const
    {
        if (cascade_.stages.empty()) return;
        if (cascade_.stages.back().rectCounts.empty()) fail("the stage before has no feature");
        finishFeature();
    }

    std::string path_;
    int line_ = 0;
    std::vector<std::string> words_;
    Cascade cascade_;
};

} // namespace

Cascade readCascade(const std::string& path) { return Parser(path).parse(); }

} // namespace app

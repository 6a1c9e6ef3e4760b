#include "tests/reference/PlainProcess.h"

#include "tests/reference/PlainBlur.h"
#include "tests/reference/PlainBoundaryBlur.h"
#include "tests/reference/PlainColorExtension.h"
#include "tests/reference/PlainExtraction.h"
#include "tests/reference/PlainFinishing.h"
#include "tests/reference/PlainFrame.h"
#include "tests/reference/PlainSmooth.h"

#include <algorithm>
#include <cmath>

namespace kovalune::test {
namespace {

PF_PixelFormat workFormatOf(PF_PixelFormat format) {
    return format == PF_PixelFormat_ARGB128 ? format : PF_PixelFormat_ARGB64;
}

/// A world as the host makes it: every byte is 0xCD.
PlainPicture poisoned(PF_PixelFormat format, const PlainPicture& size) {
    PlainPicture picture(format, size.width, size.height);
    const double channel = format == PF_PixelFormat_ARGB128 ? -431602080.0 : 52685.0;
    for (PlainPixel& pixel : picture.pixels) {
        pixel = {channel, channel, channel, channel};
    }
    return picture;
}

PlainPicture cleared(const PlainPicture& like) {
    return {like.format, like.width, like.height};
}

void uniteWith(Mask& mask, const Mask& other) {
    for (std::size_t i = 0; i < mask.elements.size(); ++i) {
        if (other.elements[i] != 0) {
            mask.elements[i] = other.elements[i];
        }
    }
}

Mask complement(const Mask& mask) {
    Mask result = mask;
    for (uint8_t& element : result.elements) {
        element = element == 0 ? 1 : 0;
    }
    return result;
}

class FrameRun {
public:
    FrameRun(const PlainJob& job, const PlainPicture& input)
        : job_(job), settings_(job.settings), rect_(job.settings.extentRect), input_(input), done_{input},
          all_(rect_.width(), rect_.height(), 1), extract_(all_.width, all_.height), stage_(extract_),
          allColors_(extract_), layerLimit_(extract_), region_(extract_),
          widened_(input.format == PF_PixelFormat_ARGB32), source_(widened_ ? plainWiden(input) : input),
          target_(source_), masked_(poisoned(workFormatOf(input.format), input)), extended_(cleared(masked_)),
          layer_(cleared(masked_)), previousLayer_(showsNoLayer() ? layer_ : masked_) {
        if (rect_.width() < input.width || rect_.height() < input.height) {
            masked_ = cleared(masked_);
        }
        for (const StageSettings& stage : settings_.stages) {
            if (stage.enableProcess != 0) {
                total_ += 3 * stage.repeat + 1;
            }
        }
    }

    PlainRendered run() {
        copy([] {}); // of the input to the output
        pass([] {}); // the input's coverage
        if (widened_) {
            pass([] {});
            pass([] {});
        }
        if (!runBase()) {
            return ended();
        }
        for (int32_t number = 1; number <= 4 && settings_.view != kViewBase; ++number) {
            if (!runProcess(settings_.stages[number]) || number == settings_.view - 4) {
                break;
            }
        }
        finish();
        return ended();
    }

private:
    /// A "Process" view up to whose stage none is on. An 8-bit frame shows the layer itself then.
    bool showsNoLayer() const {
        bool anyOn = widened_ || settings_.view < kViewProcess1;
        for (int32_t number = 1; number <= 4 && number <= settings_.view - 4; ++number) {
            anyOn = anyOn || settings_.stages[number].enableProcess != 0;
        }
        return !anyOn;
    }

    PF_Err answer(PlainCall call, int32_t number) const {
        return job_.fault.call == call && job_.fault.number == number ? job_.fault.code : PF_Err{PF_Err_NONE};
    }

    template <class Step>
    void attempt(PlainCall call, int32_t& count, const Step& step) {
        if (err_ != PF_Err_NONE) {
            return;
        }
        err_ = answer(call, ++count);
        if (err_ == PF_Err_NONE) {
            step();
        }
    }

    template <class Step>
    void pass(const Step& step) {
        attempt(PlainCall::kPass, done_.passes, step);
    }
    template <class Step>
    void copy(const Step& step) {
        attempt(PlainCall::kCopy, done_.copies, step);
    }
    void clear() {
        attempt(PlainCall::kClear, done_.clears, [] {});
    }

    /// Runs whatever has failed, and its own failure does not count.
    template <class Step>
    void passAnyway(const Step& step) {
        if (answer(PlainCall::kPass, ++done_.passes) == PF_Err_NONE) {
            step();
        }
    }

    void report() {
        if (err_ == PF_Err_NONE) {
            done_.percents.push_back(std::min(current_ * 100 / total_, 100));
            err_ = answer(PlainCall::kProgress, static_cast<int32_t>(done_.percents.size()));
        }
    }
    void tick() {
        current_ += err_ == PF_Err_NONE ? 1 : 0;
        report();
    }

    void extract(const std::vector<PlainMatch>& colours) {
        for (std::size_t i = 0; i < colours.size(); ++i) {
            attempt(PlainCall::kConversion, done_.conversions, [] {});
        }
        if (err_ == PF_Err_NONE) {
            extract_ = Mask(all_.width, all_.height);
        }
        pass([&] { extract_ = plainExtract(input_, rect_, colours, job_.iterations).mask; });
    }

    void mergeStage() {
        uniteWith(allColors_, stage_);
        uniteWith(region_, stage_);
        uniteWith(layerLimit_, stage_);
    }

    PlainPicture smoothed(const PlainPicture& from, const Mask& mask) {
        pass([&] { plainMaskedCopy(rect_, mask, true, from, masked_); });
        SmoothParams params;
        params.pixelFormat = masked_.format;
        PatternCounts counts;
        return PlainSmooth(params, masked_, counts).run();
    }

    Mask coverageOf(const PlainPicture& picture) const {
        Mask mask(all_.width, all_.height);
        for (int32_t y = 0; y < mask.height; ++y) {
            for (int32_t x = 0; x < mask.width; ++x) {
                mask.at(x, y) = picture.at(rect_.left + x, rect_.top + y).alpha != 0.0 ? 1 : 0;
            }
        }
        return mask;
    }

    /// Whether the frame goes on at all.
    bool runBase() {
        const StageSettings& base = settings_.stages[0];
        const double amount = std::trunc(base.blurAmount * job_.scale + 0.5) + 1.0;
        std::vector<PlainMatch> colours;
        for (const ColorEntry& entry : base.colors) {
            if (entry.enable != 0) {
                colours.push_back({entry.color, entry.range / 100.0});
            }
        }
        extract(colours);
        uniteWith(stage_, extract_);
        mergeStage();
        const bool smooths = amount >= 2.0 && amount <= 15.0;
        const PlainPicture blurInput = smooths ? smoothed(source_, stage_) : source_;
        tick();
        if (err_ != PF_Err_NONE) {
            return false;
        }
        int32_t passes = 0;
        const bool copies = amount < 2.0 || base.repeat == 0;
        for (int32_t p = 0; p <= (copies ? 0 : base.repeat); ++p) {
            pass([&] { ++passes; });
            if (!copies) {
                report();
            }
        }
        const PlainBlur blur = {base.keepDivision != 0, rect_, stage_, base.repeat, amount, passes};
        PlainPicture scratch = masked_;
        if (passes > 0) {
            plainBlur(blur, blurInput, target_, scratch);
        }
        return true;
    }

    /// Whether the frame goes on to the next stage.
    bool runProcess(const StageSettings& stage) {
        double reach = std::trunc(job_.scale * stage.boundaryBlur + 0.5) + 1.0;
        if (job_.scale < 1.0) {
            reach -= std::trunc((reach + 4.0) * stage.repeat / 80.0);
        }
        for (int world = 0; world < 5; ++world) {
            clear();
        }
        extended_ = cleared(masked_);
        layer_ = cleared(masked_);
        if (stage.enableProcess == 0) {
            return true;
        }
        extract({{stage.colors[0].color, stage.colors[0].range / 100.0}});
        stage_ = extract_;
        mergeStage();
        extend(stage, reach);
        if (reach > 1.0 && reach <= 30.0) {
            PlainPicture smooth = smoothed(extended_, coverageOf(extended_));
            pass([&] { plainRestoreMasked(rect_, extract_, extended_, smooth); });
            copy([&] { extended_ = smooth; });
        }
        tick();
        if (err_ != PF_Err_NONE) {
            return false;
        }
        const bool keepProcess = stage.keepProcess != 0 && anyProcessDone_;
        anyProcessDone_ = true;
        blurIntoLayer(stage, reach * 0.5);
        pass([&] { plainApplyBoundaryBias(rect_, complement(extract_), stage.boundaryBias, layer_); });
        if (keepProcess) {
            passAnyway([&] { plainClearAlphaOutside(rect_, layerLimit_, layer_); });
            pass([&] { plainMultiplyAlphaOutside(rect_, extract_, previousLayer_, layer_); });
        }
        copy([&] { previousLayer_ = layer_; });
        pass([&] { plainComposeOver(rect_, layer_, target_); });
        pass([&] { layerLimit_ = coverageOf(layer_); });
        return true;
    }

    void extend(const StageSettings& stage, double reach) {
        pass([] {});
        pass([] {});
        pass([&] {
            PlainPicture spread = cleared(masked_);
            plainExtendColors({rect_, stage_, region_, reach, stage.keepDivision != 0}, source_, extended_,
                              spread);
        });
        pass([] {}); // the coverage
    }

    /// A layer of which a pass has failed is shown nowhere, so it is not made.
    void blurIntoLayer(const StageSettings& stage, double amount) {
        if (amount < 2.0 || stage.repeat == 0) {
            pass([] {});
        } else {
            for (int32_t p = 0; p <= stage.repeat; ++p) {
                pass([] {});
                report();
                if (p == 0) {
                    pass([] {}); // the gain
                }
            }
        }
        if (err_ == PF_Err_NONE) {
            PlainPicture scratch = cleared(masked_);
            plainBoundaryBlur({stage.keepDivision != 0, rect_, region_, stage_, stage.repeat, amount},
                              extended_, layer_, scratch);
        }
    }

    void narrow(const PlainPicture& from) {
        pass([&] { plainMaskedCopy(rect_, all_, false, plainNarrow(from), done_.output); });
    }

    void finish() {
        if (widened_) {
            narrow(target_);
        } else {
            done_.output = target_;
        }
        if (settings_.view == kViewBase || settings_.view == kViewExtract) {
            const Mask& kept = settings_.view == kViewBase ? stage_ : allColors_;
            passAnyway([&] { plainClearAlphaOutside(rect_, kept, done_.output); });
        }
        if (settings_.view < kViewProcess1) {
            return;
        }
        if (widened_) {
            narrow(layer_);
        } else {
            copy([&] { done_.output = previousLayer_; });
        }
    }

    PlainRendered ended() {
        done_.err = err_;
        return done_;
    }

    const PlainJob& job_;
    const RenderSettings& settings_;
    const FrameRect rect_;
    const PlainPicture& input_;
    PlainRendered done_;
    Mask all_;
    Mask extract_;
    Mask stage_;
    Mask allColors_;
    Mask layerLimit_;
    Mask region_;
    bool widened_;
    PlainPicture source_;
    PlainPicture target_;
    PlainPicture masked_;
    PlainPicture extended_;
    PlainPicture layer_;
    PlainPicture previousLayer_;
    bool anyProcessDone_ = false;
    int32_t total_ = 0;
    int32_t current_ = 0;
    PF_Err err_ = PF_Err_NONE;
};

} // namespace

PlainRendered plainRender(const PlainJob& job, const PlainPicture& input) {
    return FrameRun(job, input).run();
}

} // namespace kovalune::test

#include "render/shots/ShotRun.h"

#include "pictures/PictureFile.h"
#include "pictures/PictureMemory.h"
#include "render/RenderFrame.h"
#include "render/SelectionNotes.h"
#include "render/shots/AtomicFile.h"
#include "render/shots/FinishedOutput.h"
#include "render/shots/OutputFile.h"
#include "text/MessageText.h"

#include <chrono>

namespace kovalune::shots {

namespace {

/// The milliseconds that `body` takes.
template <class Body>
double timed(const Body& body) {
    const auto start = std::chrono::steady_clock::now();
    body();
    return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start).count();
}

class PictureTask : public FrameTask {
public:
    PictureTask(const SequencePlan& plan, std::size_t index, const PictureRequest& request,
                const PictureMaker& maker)
        : frame_(plan.frames[index]), request_(request), maker_(maker) {
        record.index = index;
    }

    void read() override {
        record.times.reading = timed([this] {
            if (frame_.isMissing) {
                throw text::Failure(text::FailureKind::kFile, "cannot read " + text::inQuotes(frame_.input) +
                                                                  ": there is no such file");
            }
            pictures::withMemoryFor(frame_.input, [this] { readPictures(); });
        });
    }

    void make(std::size_t /*job*/) override {
        if (record.state == FrameState::kWritten) {
            record.times.effect = timed([this] {
                pictures::withMemoryFor(frame_.input, [this] { result_ = maker_(frame_, source_, record); });
            });
        }
    }

    void write() override {
        if (record.state == FrameState::kWritten) {
            record.times.writing = timed([this] {
                pictures::withMemoryFor(request_.take ? frame_.input : frame_.output,
                                        [this] { deliverPicture(); });
            });
        }
    }

    FrameRecord record;

private:
    /// One that is cut short is not what was to be there, nor is one of another size or without the layer that is made.
    bool isPassedOver(const pictures::Picture& input) const {
        const bool asksForNewest = request_.existing == ExistingOutputs::kNewer;
        const FinishedOutput output(frame_, request_);
        if ((request_.existing != ExistingOutputs::kSkip && !asksForNewest) || !output.exists() ||
            (asksForNewest && !output.isNewest())) {
            return false;
        }
        const std::optional<pictures::Picture> opened = output.opened();
        return opened && opened->width == input.width && opened->height == input.height &&
               (!asksForNewest || output.holdsItsSettings(*opened));
    }

    void readPictures() {
        source_ = readFrame(frame_.input, request_.form);
        if (isPassedOver(source_.picture)) {
            record.state = FrameState::kPassedOver;
            source_ = {};
        }
    }

    void deliverPicture() {
        if (request_.take) {
            request_.take(record.index, source_, result_);
            record.leftOut = leftOutOf(source_.picture);
        } else {
            writePicture();
        }
        record.losses = lossesOf(source_.picture);
    }

    void writePicture() {
        const pictures::FileFormat format = outputFormat(frame_.output, request_.form);
        const pictures::PictureForm form = outputForm(source_.picture, format, request_.form);
        pictures::EncodeOptions encoding = request_.form.encoding;
        if (request_.form.embeds && request_.settingsOf) {
            encoding.settings = request_.settingsOf(frame_);
        }
        const std::vector<uint8_t> bytes = pictures::encodePicture(
            format, pictures::pictureOf(result_, source_.image, source_.picture, form), encoding);
        writeAtomically(frame_.output, bytes);
        record.leftOut = leftOutOf(source_.picture, format);
    }

    const PlannedFrame& frame_;
    const PictureRequest& request_;
    const PictureMaker& maker_;
    SourceFrame source_;
    host::Image result_;
};

/// A frame through its passes.
class PassesMaker {
public:
    PassesMaker(render::OpenEffect& effect, const render::ShotSettings& settings, const ShotRequest& request,
                const std::function<bool()>& isToStop)
        : effect_(effect), settings_(settings), request_(request), isToStop_(isToStop) {}

    host::Image make(const PlannedFrame& frame, const SourceFrame& source, FrameRecord& record) const {
        host::Image result;
        for (std::size_t pass = 0; pass < settings_.passCount(); ++pass) {
            PassRecord& of = record.passes.emplace_back();
            if (request_.counts) {
                of.counts = FrameReport{.countsChanges = request_.countsChanges};
            }
            render::FrameRequest request;
            request.name = source.name;
            request.downsample = request_.downsample;
            request.legacy = request_.legacy;
            request.values = settings_.valuesAt(pass, numberOf(frame));
            request.onProgress = [this](int, int) { return !isToStop_ || !isToStop_(); };
            request.counts = of.counts ? &*of.counts : nullptr;
            std::shared_ptr<const render::FrameArea> area;
            if (request_.pictures.areas != nullptr) {
                area = request_.pictures.areas->areaOf(pass, frame, source.image.width(),
                                                       source.image.height(), of.notes);
            }
            request.area = area.get();
            result = render::renderFrame(effect_, pass == 0 ? source.image : result, request);
        }
        return result;
    }

    /// After what there is of masks. The session takes the values of the frame; nobody else looks at them.
    void addNotes(const PlannedFrame& frame, FrameRecord& record) const {
        for (std::size_t pass = 0; pass < record.passes.size(); ++pass) {
            render::setValues(effect_.session(), settings_.valuesAt(pass, numberOf(frame)));
            const std::vector<std::string> notes =
                render::selectionNotes(effect_.session(), settings_.named(pass), record.passes[pass].counts);
            record.passes[pass].notes.insert(record.passes[pass].notes.end(), notes.begin(), notes.end());
        }
    }

private:
    int64_t numberOf(const PlannedFrame& frame) const { return frame.number.value_or(request_.frame); }

    render::OpenEffect& effect_;
    const render::ShotSettings& settings_;
    const ShotRequest& request_;
    const std::function<bool()>& isToStop_;
};

void takeOutcome(FrameRecord& record, const FrameOutcome& outcome) {
    if (outcome.end != FrameEnd::kDone) {
        record.state = outcome.end == FrameEnd::kFailed ? FrameState::kFailed : FrameState::kGivenUp;
    }
    record.kind = outcome.kind;
    record.message = outcome.reason;
}

} // namespace

void runPictures(const SequencePlan& plan, const PictureRequest& request, const RunOptions& options,
                 const PictureMaker& make, const FrameListener& ended) {
    const auto begin = [&](std::size_t frame) -> std::unique_ptr<FrameTask> {
        return std::make_unique<PictureTask>(plan, frame, request, make);
    };
    runSequence(plan.frames.size(), options, begin,
                [&](std::size_t /*frame*/, FrameTask& task, const FrameOutcome& outcome) {
                    FrameRecord& record = static_cast<PictureTask&>(task).record;
                    takeOutcome(record, outcome);
                    ended(record);
                });
}

void runShot(render::OpenEffect& effect, const render::ShotSettings& settings, const SequencePlan& plan,
             const ShotRequest& request, const RunOptions& options, const FrameListener& ended) {
    const PassesMaker maker(effect, settings, request, options.isToStop);
    const PictureMaker make = [&maker](const PlannedFrame& frame, const SourceFrame& source,
                                       FrameRecord& record) { return maker.make(frame, source, record); };
    runPictures(plan, request.pictures, options, make, [&](FrameRecord& record) {
        if (record.state == FrameState::kWritten) {
            maker.addNotes(plan.frames[record.index], record);
        }
        ended(record);
    });
}

} // namespace kovalune::shots

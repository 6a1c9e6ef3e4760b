// One instance of an effect in the reference host: its set-up, its parameter values over time, its commands
// and its renders. What the effect reports is a result; wrong use of a Session throws HostError.
#pragma once

#include "host/CommandResult.h"
#include "host/EffectModule.h"
#include "host/Host.h"
#include "host/Image.h"
#include "host/ImageView.h"
#include "host/Operation.h"
#include "host/ParamValue.h"
#include "hostapi/HostApi.h"

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace kovalune::host {

enum class RenderFlow { kSmart, kLegacy };

struct RenderRequest {
    A_long time = 0; ///< in units of HostOptions::timeScale
    RenderFlow flow = RenderFlow::kSmart;
    /// The pictures are of the reduced size already; the effect is only told of the reduction.
    PF_RationalScale downsampleX{1, 1};
    PF_RationalScale downsampleY{1, 1};
    std::optional<PF_LRect> rect;      ///< Smart: what is asked for; default: the whole picture
    std::optional<PF_Rect> extentHint; ///< Legacy; default: the whole picture
    std::optional<PF_Quality> quality; ///< default: HostOptions::quality

    /// In place of the session's own, for this frame alone: frames at once may have different ones.
    ParamValues values;

    /// How far the frame is, as the effect reports it; false cancels this frame alone. Must bear several threads at once.
    ProgressFunction onProgress;
};

/// Of a render; the inherited members are those of the command that ended it.
struct RenderResult : CommandResult {
    bool rendered = false;  ///< the second smart command or the legacy one was sent
    PF_LRect requestRect{}; ///< Smart from here on
    PF_LRect resultRect{};  ///< what the effect promised; the output world has its size
    PF_LRect maxResultRect{};
    PF_LRect layerRequest{};       ///< what the effect asked of the layer last
    double preRenderSeconds = 0.0; ///< inside the effect
    double renderSeconds = 0.0;
};

class Session {
public:
    /// Runs PF_Cmd_GLOBAL_SETUP and, if that succeeds, PF_Cmd_PARAMS_SETUP, as one operation. Does not throw
    /// for what the effect reports: see setupResult. Host and module must outlive the session.
    Session(Host& host, EffectModule& module);
    ~Session(); ///< close()
    Session(const Session&) = delete;
    Session& operator=(const Session&) = delete;

    /// Of the set-up command that failed, else of PF_Cmd_PARAMS_SETUP.
    const CommandResult& setupResult() const;

    A_u_long effectVersion() const; ///< my_version
    A_long outFlags() const;
    A_long outFlags2() const;

    /// Ends the sequence and sends PF_Cmd_GLOBAL_SETDOWN where the set-up went that far and the module
    /// asks for it. Only the first call does anything; no command may follow. Throws HostError like run().
    CommandResult close();

    /// Any command, with the parameter array as it stands at `time` (none for the set-up and smart commands).
    /// Sequence and global data that the effect hands back are kept for the commands that follow.
    /// Throws HostError for options that are out of range by now.
    CommandResult run(PF_Cmd command, void* extra = nullptr, const CommandHook& prepare = {},
                      A_long time = 0);

    CommandResult about() { return run(PF_Cmd_ABOUT); }
    CommandResult updateParamsUI() { return run(PF_Cmd_UPDATE_PARAMS_UI); }
    CommandResult sequenceSetup() { return run(PF_Cmd_SEQUENCE_SETUP); }
    CommandResult sequenceResetup() { return run(PF_Cmd_SEQUENCE_RESETUP); }
    CommandResult sequenceFlatten() { return run(PF_Cmd_SEQUENCE_FLATTEN); }
    CommandResult sequenceSetdown() { return run(PF_Cmd_SEQUENCE_SETDOWN); }
    PF_Handle sequenceData() const;

    /// The bytes of the sequence data, as a host would save them; empty if there is none.
    std::vector<std::byte> sequenceBytes() const;

    /// Replaces the sequence data by a handle with these bytes, as a host that loads a project does; no bytes
    /// at all stand for no handle.
    void setSequenceBytes(const std::vector<std::byte>& bytes);

    /// Definitions as registered, in the host's order; entry 0 is the input layer. `ui_flags` and `name`
    /// follow PF_UpdateParamUI. Texts behind pointers are the session's own copies.
    const std::vector<PF_ParamDef>& params() const;

    /// The same with the values at that time, as a command's array has them.
    std::vector<PF_ParamDef> paramsWithValues(A_long time = 0) const;

    /// Index of the first parameter with this name or id, from 1.
    std::optional<int> findParam(const std::string& name) const;
    std::optional<int> findParamById(A_long id) const;

    /// Popup choices, split at '|'; empty for other types.
    std::vector<std::string> choices(int index) const;

    A_long uiFlags(int index) const;
    bool enabled(int index) const { return (uiFlags(index) & PF_PUI_DISABLED) == 0; }

    /// A value for all times; drops the keys. Throws HostError for a wrong index, type or a valueless
    /// parameter. Limits are not enforced.
    void setValue(int index, ParamValue value);

    /// From `time` on, until the next key; the first key holds before itself too.
    void setKey(int index, A_long time, ParamValue value);

    ParamValue value(int index, A_long time = 0) const;
    ParamValue defaultValue(int index) const;

    /// May be called from several threads at once. `output` has the input's format and size, or is empty and
    /// becomes such a picture of transparent black; only what the effect writes in it changes, also when the
    /// effect fails. Throws HostError for a refused size and for options that are out of range by now, and
    /// std::bad_alloc if the worlds of the frame cannot be had. An effect that promises a result out of all
    /// bounds or larger than a world ends the frame unrendered with INTERNAL_STRUCT_DAMAGED and a misuse.
    ///
    /// A render sends its render commands and nothing else: no PF_Cmd_FRAME_SETUP and PF_Cmd_FRAME_SETDOWN
    /// stand around PF_Cmd_RENDER, and whether a sequence was set up before is the caller's affair.
    RenderResult render(const Image& input, Image& output, const RenderRequest& request = {});

    /// The same on pictures in the caller's memory, both of one format and size: what the effect reads and writes is that
    /// very memory, so that HostOptions' layout of rows does not count. (A result that reaches beyond the picture gets a
    /// world of the host's own, and what is common is copied.) Throws HostError also for views that checkView refuses and
    /// where input and output have pixels in common.
    RenderResult render(const ConstImageView& input, const ImageView& output,
                        const RenderRequest& request = {});

private:
    struct State;
    std::unique_ptr<State> state_;
};

} // namespace kovalune::host

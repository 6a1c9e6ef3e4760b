// All that one frame holds while it is rendered: its stages, its masks, its scratch worlds, its progress and its first
// failure. Everything is made at the frame's start and released, in reverse order, at its end.
#pragma once

#include "effect/Kovalune.h"
#include "effect/pipeline/FramePasses.h"
#include "effect/pipeline/FrameStage.h"
#include "effect/raster/MaskPlane.h"
#include "effect/raster/ProgressCounter.h"
#include "effect/raster/Workbench.h"
#include "effect/share/AEUtil/AEWorldSuite.h"
#include "effect/share/HostCode.h"
#include "effect/share/RenderSettings.h"
#include "hostapi/HostApi.h"

namespace kovalune {

/// Masks of the frame's working rectangle. All are made, in this order; what no pass reads is frozen, since the host sees
/// each of them being made.
struct FramePlanes {
    explicit FramePlanes(const RenderSettings& settings);

    MaskPlane extractMask;      ///< result of the latest colour extraction
    MaskPlane extendLimitMask;  ///< shares the bytes of `regionMask`, for the colour extension
    MaskPlane processUnionMask; ///< union of all Process extractions; frozen
    MaskPlane sparePlane0;      ///< frozen
    MaskPlane sparePlane1;      ///< frozen
    MaskPlane stageMask;        ///< the current stage's region
    MaskPlane
        allColorsMask;  ///< union of the regions of all stages run so far; the "Extract" view is cut to it
    MaskPlane fullMask; ///< all pixels
    MaskPlane
        inputCoverage; ///< pixels of non-zero alpha in the input; frozen, and so is the pass that fills it
    MaskPlane layerLimitMask; ///< what a stage with "Keep Process" stays inside
    MaskPlane regionMask;     ///< union of the regions of all stages run so far; limit of extension and blur
    MaskPlane extendedCoverage; ///< pixels of non-zero alpha in `extendedWorld`
    MaskPlane stageCopyMask;    ///< the stage's extraction, handed to the colour extension
    MaskPlane outsideMask;      ///< the complement of `extractMask`
};

/// Scratch worlds of the output's size, in the frame's work format; all are made, in this order.
struct FrameWorlds {
    FrameWorlds() = default;

    /// `wide...` exist in a widened frame only. Throws where the host cannot make one.
    FrameWorlds(const RenderSettings& settings, const FramePasses& passes);

    AEUtil::EffectWorldPtr maskedWorld;     ///< selected pixels alone; also scratch of the Base blur
    AEUtil::EffectWorldPtr baseSmoothWorld; ///< output of boundary smoothing in the Base stage
    AEUtil::EffectWorldPtr wideSource;      ///< 16-bit copy of the input
    AEUtil::EffectWorldPtr wideTarget;      ///< 16-bit image being built
    AEUtil::EffectWorldPtr spareWide;       ///< frozen: the host sees it being made
    AEUtil::EffectWorldPtr extendedWorld;   ///< a stage's extended image
    AEUtil::EffectWorldPtr smoothedWorld;   ///< output of boundary smoothing in a Process stage
    AEUtil::EffectWorldPtr layerWorld;      ///< a stage's blurred layer
    AEUtil::EffectWorldPtr blurScratchWorld;
    AEUtil::EffectWorldPtr extendScratchWorld;
    AEUtil::EffectWorldPtr spareWork;          ///< for a report: the picture before a stage; else frozen
    AEUtil::EffectWorldPtr previousLayerWorld; ///< copy of the last layer
};

/// A frame from the time on when the output is a copy of the input.
struct Frame {
    /// Makes the planes. Throws where the host has no memory for one. `soFar` is how that copy went: a failure is the
    /// frame's first. The settings outlive the frame.
    Frame(const FramePasses& framePasses, const RenderSettings& frameSettings, const FrameOpening& opening,
          PF_Err soFar);

    /// Takes the input's coverage, then makes the worlds. Throws where the host cannot make one.
    void open();

    const FramePasses& passes;
    const RenderSettings& settings; ///< as the host gave them; what stages go by is `stages`
    const std::array<FrameStage, kStageCount> stages;
    FramePlanes planes;
    PF_Err err;         ///< first failure of the frame
    FrameWorlds worlds; ///< empty until the frame is open
    ProgressCounter progress;
    Workbench workbench;    ///< scratch memory of all passes
    PF_EffectWorld* source; ///< the image that stages read
    PF_EffectWorld* target; ///< the image being built
    FrameReport* report;    ///< what a tool of this process asked for; normally null

    PF_InData* inData() const { return settings.inData; }
    const FrameRect& rect() const { return settings.extentRect; }

    bool failed() const { return err != PF_Err_NONE; }

    /// Runs a step unless one has failed before; its code is then the frame's.
    template <class Step>
    void attempt(Step&& step) {
        if (!failed()) {
            err = step();
        }
    }

    /// Takes the code of a step that was run: the frame's, unless it has failed before.
    void note(PF_Err code) {
        if (!failed()) {
            err = code;
        }
    }

    /// Runs a step whatever has failed before; its own failure is none of the frame's.
    template <class Step>
    void regardless(Step&& step) {
        ignored(step());
    }
};

} // namespace kovalune

// All that one frame holds while it is rendered: its copy of the settings, its masks, its scratch worlds, its
// progress and its first failure. Everything is made at the frame's start and released, in reverse order, at
// its end.
#pragma once

#include "effect/Kovalune.h"
#include "effect/pipeline/FramePasses.h"
#include "effect/raster/MaskPlane.h"
#include "effect/raster/ProgressCounter.h"
#include "effect/share/AEUtil/AEWorldSuite.h"
#include "effect/share/RenderSettings.h"
#include "hostapi/HostApi.h"

namespace kovalune {

/// Masks of the frame's working rectangle.
struct FramePlanes {
    explicit FramePlanes(const RenderSettings& settings);

    MaskPlane extractMask;      ///< result of the latest colour extraction
    MaskPlane extendLimitMask;  ///< shares the bytes of `regionMask`, for the colour extension
    MaskPlane processUnionMask; ///< union of all Process extractions
    MaskPlane sparePlane0;
    MaskPlane sparePlane1;
    MaskPlane stageMask; ///< the current stage's region
    MaskPlane
        allColorsMask;  ///< union of the regions of all stages run so far; the "Extract" view is cut to it
    MaskPlane fullMask; ///< all pixels
    MaskPlane inputCoverage;  ///< pixels of non-zero alpha in the input
    MaskPlane layerLimitMask; ///< what a stage with "Keep Process" stays inside
    MaskPlane regionMask;     ///< union of the regions of all stages run so far; limit of extension and blur
    MaskPlane extendedCoverage; ///< pixels of non-zero alpha in `extendedWorld`
    MaskPlane stageCopyMask;    ///< the stage's extraction, handed to the colour extension
    MaskPlane outsideMask;      ///< the complement of `extractMask`
};

/// Scratch worlds of the output's size, in the frame's work format.
struct FrameWorlds {
    /// `wide...` exist in a widened frame only. Throws where the host cannot make one.
    FrameWorlds(const RenderSettings& settings, const FramePasses& passes);

    AEUtil::EffectWorldPtr maskedWorld;     ///< selected pixels alone; also scratch of the Base blur
    AEUtil::EffectWorldPtr baseSmoothWorld; ///< output of boundary smoothing in the Base stage
    AEUtil::EffectWorldPtr wideSource;      ///< 16-bit copy of the input
    AEUtil::EffectWorldPtr wideTarget;      ///< 16-bit image being built
    AEUtil::EffectWorldPtr spareWide;
    AEUtil::EffectWorldPtr extendedWorld; ///< a stage's extended image
    AEUtil::EffectWorldPtr smoothedWorld; ///< output of boundary smoothing in a Process stage
    AEUtil::EffectWorldPtr layerWorld;    ///< a stage's blurred layer
    AEUtil::EffectWorldPtr blurScratchWorld;
    AEUtil::EffectWorldPtr extendScratchWorld;
    AEUtil::EffectWorldPtr spareWork;          ///< for a report: the picture before a stage
    AEUtil::EffectWorldPtr previousLayerWorld; ///< copy of the last layer
};

/// What the opening of a frame hands on: the settings, scaled and normalised, and how the frame stands.
struct FrameStart {
    RenderSettings settings;
    double scale = 1.0;    ///< the smaller of the host's downsample factors
    int32_t stepTotal = 0; ///< estimated progress steps
    PF_Err err = PF_Err_NONE;
};

/// A frame behind its opening, while the output is a copy of the input.
struct Frame {
    /// Makes all planes and worlds. Throws where the host has no memory for one.
    Frame(const FramePasses& framePasses, const FrameStart& start);

    const FramePasses& passes;
    const RenderSettings settings;
    const double scale;
    // In the order in which they are made: between planes and worlds the input's coverage is taken.
    FramePlanes planes;
    PF_Err err; ///< first failure of the frame
    FrameWorlds worlds;
    ProgressCounter progress;
    PF_EffectWorld* source; ///< the image that stages read
    PF_EffectWorld* target; ///< the image being built
    FrameReport* report;    ///< what a tool of this process asked for; normally null

    PF_InData* inData() const { return settings.inData; }
    const FrameRect& rect() const { return settings.extentRect; }

    /// Runs a step unless one has failed before; its code is then the frame's.
    template <class Step>
    void attempt(Step&& step) {
        if (err == PF_Err_NONE) {
            err = step();
        }
    }
};

/// Where a frame goes on behind a stage.
enum class StageEnd {
    kNextStage,
    kFinish,  ///< to the finish: no further stage
    kAbandon, ///< neither stages nor finish; the frame releases what it holds and returns its code
};

} // namespace kovalune

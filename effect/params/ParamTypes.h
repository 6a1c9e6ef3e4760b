// The kinds of parameter: one class for each type of control.
#pragma once

#include "effect/params/BaseParam.h"

namespace kovalune {

class ParamAddSlider final : public BaseParam {
public:
    struct Limits {
        int32_t validMin, validMax, sliderMin, sliderMax, initial;
    };
    ParamAddSlider(FieldTarget field, const char* name, const PF_ParamDef* definitionTemplate,
                   const Limits& limits)
        : BaseParam(field, name, definitionTemplate), limits_(limits) {}

    [[nodiscard]] PF_Err addToHost(PF_InData* inData, int32_t id, const char* defaultsPath) override;
    [[nodiscard]] bool saveDefault(const char* defaultsPath) const override;

private:
    Limits limits_;
};

class ParamAddFloatSlider final : public BaseParam {
public:
    struct Limits {
        float validMin, validMax, sliderMin, sliderMax, initial;
        PF_Precision precision;
        PF_ValueDisplayFlags displayFlags;
        bool wantPhase;
    };
    ParamAddFloatSlider(FieldTarget field, const char* name, const PF_ParamDef* definitionTemplate,
                        const Limits& limits)
        : BaseParam(field, name, definitionTemplate), limits_(limits) {}

    [[nodiscard]] PF_Err addToHost(PF_InData* inData, int32_t id, const char* defaultsPath) override;
    [[nodiscard]] bool saveDefault(const char* defaultsPath) const override;

private:
    Limits limits_;
};

class ParamAddCheckbox final : public BaseParam {
public:
    /// `text` stands beside the box; `flags` are or-ed into the definition's.
    ParamAddCheckbox(FieldTarget field, const char* name, const PF_ParamDef* definitionTemplate,
                     const char* text, int8_t initial, PF_ParamFlags flags)
        : BaseParam(field, name, definitionTemplate), text_(text), initial_(initial), flags_(flags) {}

    [[nodiscard]] PF_Err addToHost(PF_InData* inData, int32_t id, const char* defaultsPath) override;
    [[nodiscard]] bool saveDefault(const char* defaultsPath) const override;

private:
    const char* text_;
    int8_t initial_;
    PF_ParamFlags flags_;
};

/// In the defaults file a colour is four keys; the alpha is written and never read.
class ParamAddColor final : public BaseParam {
public:
    ParamAddColor(FieldTarget field, const char* name, const PF_ParamDef* definitionTemplate,
                  PF_Pixel initial)
        : BaseParam(field, name, definitionTemplate), initial_(initial) {}

    [[nodiscard]] PF_Err addToHost(PF_InData* inData, int32_t id, const char* defaultsPath) override;
    [[nodiscard]] bool saveDefault(const char* defaultsPath) const override;

private:
    PF_Pixel initial_;
};

class ParamAddPopup final : public BaseParam {
public:
    /// `choices` is a constant text, one choice before each bar; values count from 1.
    ParamAddPopup(FieldTarget field, const char* name, const PF_ParamDef* definitionTemplate,
                  int16_t choiceCount, int16_t initial, const char* choices)
        : BaseParam(field, name, definitionTemplate), choiceCount_(choiceCount), initial_(initial),
          choices_(choices) {}

    [[nodiscard]] PF_Err addToHost(PF_InData* inData, int32_t id, const char* defaultsPath) override;
    [[nodiscard]] bool saveDefault(const char* defaultsPath) const override;

private:
    int16_t choiceCount_;
    int16_t initial_;
    const char* choices_;
};

/// Starts a group of controls.
class ParamAddTopic final : public BaseParam {
public:
    ParamAddTopic(const char* name, const PF_ParamDef* definitionTemplate)
        : BaseParam({}, name, definitionTemplate) {}

    [[nodiscard]] PF_Err addToHost(PF_InData* inData, int32_t id, const char* defaultsPath) override;
};

/// Ends a group of controls.
class ParamEndTopic final : public BaseParam {
public:
    ParamEndTopic() : BaseParam({}, "", nullptr) {}

    [[nodiscard]] PF_Err addToHost(PF_InData* inData, int32_t id, const char* defaultsPath) override;
};

} // namespace kovalune

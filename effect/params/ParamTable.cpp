#include "effect/params/ParamTable.h"

#include "effect/params/ParamRegistry.h"
#include "effect/params/ParamTypes.h"

#include <array>
#include <memory>
#include <utility>

namespace kovalune {
namespace {

constexpr char kViewChoices[] = "Normal|(-|Extract|Base|Process 1|Process 2|Process 3|Process 4|";
constexpr PF_Pixel kDefaultColor = {255, 3, 180, 245};

//                                                     valid      slider   default
constexpr ParamAddFloatSlider::Limits kBlurLimits = {0, 1000, 0, 100, 10, 1, PF_ValueDisplayFlag_NONE, false};
constexpr ParamAddFloatSlider::Limits kRangeLimits = {0,    100, 0, 50, 0, 1, PF_ValueDisplayFlag_PERCENT,
                                                      false};
constexpr ParamAddFloatSlider::Limits kBiasLimits = {0, 100, 0, 10, 0, 1, PF_ValueDisplayFlag_NONE, false};
constexpr ParamAddSlider::Limits kRepeatLimits = {1, 10, 1, 10, 5};

// offsetof and sizeof of one field, so that the two cannot differ.
#define FIELD(container, field)                                                                              \
    FieldTarget {                                                                                            \
        offsetof(container, field), sizeof(container::field)                                                 \
    }

FieldTarget stageField(int stage, FieldTarget field) {
    return {offsetof(RenderSettings, stages) + static_cast<std::size_t>(stage) * sizeof(StageSettings) +
                field.place,
            field.width};
}

FieldTarget colorField(int stage, int entry, FieldTarget field) {
    return stageField(stage, {offsetof(StageSettings, colors) +
                                  static_cast<std::size_t>(entry) * sizeof(ColorEntry) + field.place,
                              field.width});
}

const FieldTarget kEntryEnable = FIELD(ColorEntry, enable);
const FieldTarget kEntryColor = FIELD(ColorEntry, color);
const FieldTarget kEntryRange = FIELD(ColorEntry, range);

struct BaseColorLabels {
    const char* enable;
    const char* color;
    const char* range;
};
constexpr std::array<BaseColorLabels, 4> kBaseColors = {{
    {"Enable 1", "Color 1", "Color 1 Range"},
    {"Enable 2", "Color 2", "Color 2 Range"},
    {"Enable 3", "Color 3", "Color 3 Range"},
    {"Enable 4", "Color 4", "Color 4 Range"},
}};

struct ProcessLabels {
    const char* topic;
    const char* enable;
    const char* color;
    const char* range;
    const char* blur;
    const char* repeat;
    const char* bias;
    const char* keepDivision;
    const char* keepProcess; ///< null: the first stage has none before it to keep
};
constexpr std::array<ProcessLabels, 4> kProcesses = {{
    {"Process 1", "1 : Enable Process", "1 : Color", "1 : Color Range", "1 : Boundary Blur",
     "1 : Blur Repeat Num", "1 : Boundary Bias", "1 : Keep Division", nullptr},
    {"Process 2", "2 : Enable Process", "2 : Color", "2 : Color Range", "2 : Boundary Blur",
     "2 : Blur Repeat Num", "2 : Boundary Bias", "2 : Keep Division", "2 : Keep Process"},
    {"Process 3", "3 : Enable Process", "3 : Color", "3 : Color Range", "3 : Boundary Blur",
     "3 : Blur Repeat Num", "3 : Boundary Bias", "3 : Keep Division", "3 : Keep Process"},
    {"Process 4", "4 : Enable Process", "4 : Color", "4 : Color Range", "4 : Boundary Blur",
     "4 : Blur Repeat Num", "4 : Boundary Bias", "4 : Keep Division", "4 : Keep Process"},
}};

/// Constructs the objects in the order of the host's index.
class TableBuilder {
public:
    TableBuilder() { control_.flags = PF_ParamFlag_COLLAPSE_TWIRLY; }

    void popup(int32_t id, const char* label, int16_t choices, int16_t initial, const char* text,
               FieldTarget field) {
        add<ParamAddPopup>(id, field, label, &control_, choices, initial, text);
    }
    void topic(int32_t id, const char* label) { add<ParamAddTopic>(id, label, &topic_); }
    void endTopic(int32_t id) { add<ParamEndTopic>(id); }
    void checkbox(int32_t id, const char* label, bool initial, FieldTarget field) {
        add<ParamAddCheckbox>(id, field, label, &control_, "", initial ? int8_t{1} : int8_t{0},
                              PF_ParamFlags{0});
    }
    void color(int32_t id, const char* label, FieldTarget field) {
        add<ParamAddColor>(id, field, label, &control_, kDefaultColor);
    }
    void slider(int32_t id, const char* label, const ParamAddSlider::Limits& limits, FieldTarget field) {
        add<ParamAddSlider>(id, field, label, &control_, limits);
    }
    void slider(int32_t id, const char* label, const ParamAddFloatSlider::Limits& limits, FieldTarget field) {
        add<ParamAddFloatSlider>(id, field, label, &control_, limits);
    }

private:
    template <class Param, class... Arguments>
    void add(int32_t id, Arguments&&... arguments) {
        paramRegistry().add(std::make_unique<Param>(std::forward<Arguments>(arguments)...), id, 0);
    }

    PF_ParamDef control_ = {};
    PF_ParamDef topic_ = {};
};

void addBaseGroup(TableBuilder& table) {
    table.topic(50, "Base");
    table.slider(54, "Blur Amount", kBlurLimits, stageField(0, FIELD(StageSettings, blurAmount)));
    table.slider(55, "Blur Repeat Num", kRepeatLimits, stageField(0, FIELD(StageSettings, repeat)));
    table.checkbox(59, "Keep Division", true, stageField(0, FIELD(StageSettings, keepDivision)));
    int32_t id = 61;
    int entry = 0;
    for (const BaseColorLabels& labels : kBaseColors) {
        table.checkbox(id++, labels.enable, entry == 0, colorField(0, entry, kEntryEnable));
        table.color(id++, labels.color, colorField(0, entry, kEntryColor));
        table.slider(id++, labels.range, kRangeLimits, colorField(0, entry, kEntryRange));
        ++entry;
    }
    table.endTopic(51);
}

/// Inside a group the ids are not in table order, and some are left out: frozen.
void addProcessGroup(TableBuilder& table, int stage, int32_t groupId, const ProcessLabels& labels) {
    table.topic(groupId, labels.topic);
    table.checkbox(groupId + 2, labels.enable, stage == 1,
                   stageField(stage, FIELD(StageSettings, enableProcess)));
    table.color(groupId + 12, labels.color, colorField(stage, 0, kEntryColor));
    table.slider(groupId + 13, labels.range, kRangeLimits, colorField(stage, 0, kEntryRange));
    table.slider(groupId + 7, labels.blur, kBlurLimits,
                 stageField(stage, FIELD(StageSettings, boundaryBlur)));
    table.slider(groupId + 5, labels.repeat, kRepeatLimits, stageField(stage, FIELD(StageSettings, repeat)));
    table.slider(groupId + 6, labels.bias, kBiasLimits,
                 stageField(stage, FIELD(StageSettings, boundaryBias)));
    table.checkbox(groupId + 9, labels.keepDivision, true,
                   stageField(stage, FIELD(StageSettings, keepDivision)));
    if (labels.keepProcess != nullptr) {
        table.checkbox(groupId + 10, labels.keepProcess, true,
                       stageField(stage, FIELD(StageSettings, keepProcess)));
    }
    table.endTopic(groupId + 1);
}

} // namespace

void buildParamTable() {
    paramRegistry().clear();
    TableBuilder table;
    table.popup(1, "View", 8, 1, kViewChoices, FIELD(RenderSettings, view));
    addBaseGroup(table);
    int stage = 1;
    int32_t groupId = 100;
    for (const ProcessLabels& labels : kProcesses) {
        addProcessGroup(table, stage++, groupId, labels);
        groupId += 50;
    }
    paramRegistry().finish();
}

} // namespace kovalune

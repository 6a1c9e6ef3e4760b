#include "tests/params/ExpectedTable.h"

#include "effect/share/RenderSettings.h"

#include <stdexcept>

namespace kovalune::test {
namespace {

constexpr PF_ParamType kInt = PF_Param_SLIDER;
constexpr PF_ParamType kFloat = PF_Param_FLOAT_SLIDER;
constexpr PF_ParamType kBox = PF_Param_CHECKBOX;
constexpr PF_ParamType kColor = PF_Param_COLOR;
constexpr PF_ParamType kStart = PF_Param_GROUP_START;
constexpr PF_ParamType kEnd = PF_Param_GROUP_END;

template <class Field>
std::size_t placeOf(const RenderSettings& record, const Field& field) {
    const auto* const start = static_cast<const std::byte*>(static_cast<const void*>(&record));
    const auto* const place = static_cast<const std::byte*>(static_cast<const void*>(&field));
    return static_cast<std::size_t>(place - start);
}

std::vector<ExpectedParam> written() {
    const RenderSettings r;
    const StageSettings& b = r.stages[0];
    const auto at = [&r](const auto& field) { return placeOf(r, field); };
    std::vector<ExpectedParam> rows = {
        {1, 1, PF_Param_POPUP, "View", 1, 0, 0, at(r.view), 4},
        {2, 50, kStart, "Base", 0, 0, 0, 0, 0},
        {3, 54, kFloat, "Blur Amount", 10, 1000, 100, at(b.blurAmount), 8},
        {4, 55, kInt, "Blur Repeat Num", 5, 10, 10, at(b.repeat), 4},
        {5, 59, kBox, "Keep Division", 1, 0, 0, at(b.keepDivision), 1},
        {6, 61, kBox, "Enable 1", 1, 0, 0, at(b.colors[0].enable), 1},
        {7, 62, kColor, "Color 1", 0, 0, 0, at(b.colors[0].color), 4},
        {8, 63, kFloat, "Color 1 Range", 0, 100, 50, at(b.colors[0].range), 8},
        {9, 64, kBox, "Enable 2", 0, 0, 0, at(b.colors[1].enable), 1},
        {10, 65, kColor, "Color 2", 0, 0, 0, at(b.colors[1].color), 4},
        {11, 66, kFloat, "Color 2 Range", 0, 100, 50, at(b.colors[1].range), 8},
        {12, 67, kBox, "Enable 3", 0, 0, 0, at(b.colors[2].enable), 1},
        {13, 68, kColor, "Color 3", 0, 0, 0, at(b.colors[2].color), 4},
        {14, 69, kFloat, "Color 3 Range", 0, 100, 50, at(b.colors[2].range), 8},
        {15, 70, kBox, "Enable 4", 0, 0, 0, at(b.colors[3].enable), 1},
        {16, 71, kColor, "Color 4", 0, 0, 0, at(b.colors[3].color), 4},
        {17, 72, kFloat, "Color 4 Range", 0, 100, 50, at(b.colors[3].range), 8},
        {18, 51, kEnd, "", 0, 0, 0, 0, 0},
    };
    const int starts[] = {0, 19, 28, 38, 48};
    const A_long bases[] = {0, 100, 150, 200, 250};
    for (int n = 1; n <= 4; ++n) {
        const StageSettings& s = r.stages[n];
        const int p = starts[n];
        const A_long g = bases[n];
        const std::string digit = std::to_string(n);
        rows.insert(rows.end(),
                    {{p, g, kStart, "Process " + digit, 0, 0, 0, 0, 0},
                     {p + 1, g + 2, kBox, digit + " : Enable Process", n == 1 ? 1.0 : 0.0, 0, 0,
                      at(s.enableProcess), 1},
                     {p + 2, g + 12, kColor, digit + " : Color", 0, 0, 0, at(s.colors[0].color), 4},
                     {p + 3, g + 13, kFloat, digit + " : Color Range", 0, 100, 50, at(s.colors[0].range), 8},
                     {p + 4, g + 7, kFloat, digit + " : Boundary Blur", 10, 1000, 100, at(s.boundaryBlur), 8},
                     {p + 5, g + 5, kInt, digit + " : Blur Repeat Num", 5, 10, 10, at(s.repeat), 4},
                     {p + 6, g + 6, kFloat, digit + " : Boundary Bias", 0, 100, 10, at(s.boundaryBias), 8},
                     {p + 7, g + 9, kBox, digit + " : Keep Division", 1, 0, 0, at(s.keepDivision), 1}});
        if (n > 1) {
            rows.push_back({p + 8, g + 10, kBox, digit + " : Keep Process", 1, 0, 0, at(s.keepProcess), 1});
        }
    }
    const int ends[] = {27, 37, 47, 57};
    for (int n = 0; n < 4; ++n) {
        rows.insert(rows.begin() + ends[n] - 1, {ends[n], 101 + 50 * n, kEnd, "", 0, 0, 0, 0, 0});
    }
    return rows;
}

} // namespace

const std::vector<ExpectedParam>& expectedTable() {
    static const std::vector<ExpectedParam> rows = written();
    return rows;
}

const ExpectedParam& expectedParam(const std::string& label) {
    for (const ExpectedParam& row : expectedTable()) {
        if (row.label == label) {
            return row;
        }
    }
    throw std::logic_error("no parameter " + label);
}

} // namespace kovalune::test

#include "render/ParamLabel.h"

#include "hostapi/Constants.h"
#include "render/ParamText.h"
#include "text/AsciiText.h"
#include "text/Failure.h"
#include "text/MessageText.h"
#include "text/NearestNames.h"

#include <algorithm>
#include <string>

namespace kovalune::render {

namespace {

/// Without the blanks around colons.
std::string withTightColons(std::string_view label) {
    std::string tight;
    for (std::size_t start = 0; start <= label.size();) {
        const std::size_t colon = std::min(label.find(':', start), label.size());
        tight += text::trimmed(label.substr(start, colon - start));
        if (colon < label.size()) {
            tight += ':';
        }
        start = colon + 1;
    }
    return tight;
}

struct Matches {
    std::vector<std::size_t> settable; ///< by sameLabel
    std::vector<std::size_t> exact;    ///< of the settable ones
    const PF_ParamDef* other = nullptr;
};

Matches matchesOf(const std::vector<PF_ParamDef>& params, std::string_view label) {
    Matches matches;
    for (std::size_t index = 1; index < params.size(); ++index) {
        const PF_ParamDef& def = params[index];
        if (!sameLabel(def.name, label) || def.param_type == PF_Param_GROUP_END) {
            continue;
        }
        if (!isSettable(def)) {
            matches.other = &def;
            continue;
        }
        matches.settable.push_back(index);
        if (label == def.name) {
            matches.exact.push_back(index);
        }
    }
    return matches;
}

[[noreturn]] void failUnknown(const std::vector<PF_ParamDef>& params, std::string_view label) {
    std::vector<std::string> labels;
    for (const PF_ParamDef& def : params) {
        if (isSettable(def)) {
            labels.emplace_back(def.name);
        }
    }
    std::string text = "no parameter is called " + text::inQuotes(label);
    const std::vector<std::string> nearest = text::nearestNames(label, labels);
    if (nearest.empty()) {
        text += "; 'kovalune params' lists them";
    } else {
        const char* before = "; the nearest: ";
        for (const std::string& name : nearest) {
            text += before + text::inQuotes(name);
            before = ", ";
        }
    }
    throw text::Failure(text::FailureKind::kUsage, text);
}

} // namespace

bool isSettable(const PF_ParamDef& def) {
    return !kindText(def).empty();
}

bool sameLabel(std::string_view a, std::string_view b) {
    return text::equalWithoutCase(withTightColons(a), withTightColons(b));
}

int findSettable(const std::vector<PF_ParamDef>& params, std::string_view label) {
    const Matches matches = label.empty() ? Matches{} : matchesOf(params, label);
    if (matches.exact.size() == 1) {
        return static_cast<int>(matches.exact.front());
    }
    if (matches.settable.size() == 1) {
        return static_cast<int>(matches.settable.front());
    }
    if (matches.settable.size() > 1) {
        throw text::Failure(text::FailureKind::kUsage, text::inQuotes(label) + " is the label of " +
                                                           std::to_string(matches.settable.size()) +
                                                           " parameters and cannot tell them apart");
    }
    if (matches.other == nullptr) {
        failUnknown(params, label);
    }
    if (matches.other->param_type == PF_Param_GROUP_START) {
        throw text::Failure(text::FailureKind::kUsage,
                            text::inQuotes(matches.other->name) + " is a group and has no value");
    }
    throw text::Failure(text::FailureKind::kUsage,
                        text::inQuotes(matches.other->name) +
                            " is of a kind that cannot be set from the command line");
}

} // namespace kovalune::render

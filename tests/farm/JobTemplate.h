// Job templates by the Open Job Description's rules, version 2023-09, as far as our template uses them: what is not among them is
// refused, whatever the description has beside it.
#pragma once

#include <map>
#include <nlohmann/json_fwd.hpp>
#include <string>
#include <vector>

namespace kovalune::test {

struct TemplateTask {
    std::string step;
    std::vector<std::string> words; ///< the command and its arguments
};

/// The tasks of a job, in an order that its dependencies allow. Throws std::runtime_error where the template breaks a rule or the
/// values do not fit it.
std::vector<TemplateTask> expandedTemplate(const nlohmann::json& text,
                                           const std::map<std::string, std::string>& values);

} // namespace kovalune::test

#include "tests/farm/JobTemplate.h"

#include <algorithm>
#include <nlohmann/json.hpp>
#include <regex>
#include <set>
#include <stdexcept>

namespace kovalune::test {

namespace {

using Json = nlohmann::json;
using Names = std::map<std::string, std::string>;

void require(bool condition, const std::string& rule) {
    if (!condition) {
        throw std::runtime_error(rule);
    }
}

std::string rule(const std::string& what, const char* says, const std::string& name) {
    return what + says + name;
}

/// Its members are all of `needed` and some of `allowed`, and no others.
void requireMembers(const Json& record, const std::set<std::string>& needed,
                    const std::set<std::string>& allowed, const std::string& what) {
    require(record.is_object(), what + " is no record");
    for (const auto& [name, value] : record.items()) {
        require(needed.contains(name) || allowed.contains(name), rule(what, " has no member ", name));
    }
    for (const std::string& name : needed) {
        require(record.contains(name), rule(what, " lacks ", name));
    }
}

std::string textIn(const Json& record, const std::string& name, std::size_t most) {
    require(record.at(name).is_string(), name + " is no text");
    std::string text = record.at(name);
    require(!text.empty() && text.size() <= most, name + " is empty or too long");
    return text;
}

std::string identifierIn(const Json& record) {
    std::string name = textIn(record, "name", 64);
    require(std::regex_match(name, std::regex("[A-Za-z_][A-Za-z0-9_]*")), name + " is no identifier");
    return name;
}

/// With a value for each {{NAME}}.
std::string resolved(const std::string& format, const Names& names) {
    std::string text;
    std::size_t at = 0;
    while (true) {
        const std::size_t start = format.find("{{", at);
        if (start == std::string::npos) {
            text += format.substr(at);
            return text;
        }
        const std::size_t end = format.find("}}", start);
        require(end != std::string::npos, "an open {{ in " + format);
        std::string name = format.substr(start + 2, end - start - 2);
        name.erase(0, name.find_first_not_of(' '));
        name.erase(name.find_last_not_of(' ') + 1);
        require(names.contains(name), "nothing is called " + name + " here");
        text += format.substr(at, start - at) + names.at(name);
        at = end + 2;
    }
}

void checkText(const Json& definition, const std::string& value, const std::string& name) {
    require(value.size() >= definition.value("minLength", std::size_t{0}), name + " is too short");
    require(value.size() <= definition.value("maxLength", std::size_t{1024}), name + " is too long");
}

void checkPath(const Json& definition) {
    const std::set<std::string> objects = {"FILE", "DIRECTORY"};
    const std::set<std::string> flows = {"NONE", "IN", "OUT", "INOUT"};
    require(objects.contains(definition.value("objectType", "DIRECTORY")), "objectType");
    require(flows.contains(definition.value("dataFlow", "NONE")), "dataFlow");
}

void checkNumber(const Json& definition, const std::string& value, const std::string& name) {
    require(std::regex_match(value, std::regex("-?[0-9]{1,18}")), name + " is no whole number");
    const int64_t number = std::stoll(value);
    require(!definition.contains("minValue") || number >= definition["minValue"].get<int64_t>(),
            name + " is too small");
    require(!definition.contains("maxValue") || number <= definition["maxValue"].get<int64_t>(),
            name + " is too large");
}

/// "Param.NAME" of each.
Names parametersOf(const Json& text, const Names& values) {
    const Json& definitions = text.at("parameterDefinitions");
    require(definitions.is_array() && !definitions.empty() && definitions.size() <= 50,
            "1 to 50 parameterDefinitions");
    const std::map<std::string, std::set<std::string>> allowed = {
        {"STRING", {"default", "description", "minLength", "maxLength"}},
        {"PATH", {"default", "description", "minLength", "maxLength", "objectType", "dataFlow"}},
        {"INT", {"default", "description", "minValue", "maxValue"}}};
    Names names;
    for (const Json& definition : definitions) {
        const std::string type = definition.at("type");
        require(allowed.contains(type), "the type " + type);
        requireMembers(definition, {"name", "type"}, allowed.at(type), "a parameter");
        const std::string name = identifierIn(definition);
        require(values.contains(name) || definition.contains("default"), name + " has no value");
        const Json& byDefault = definition.value("default", Json());
        require(byDefault.is_null() || byDefault.is_number_integer() == (type == "INT"), name + "'s default");
        const std::string value = values.contains(name)   ? values.at(name)
                                  : byDefault.is_string() ? byDefault.get<std::string>()
                                                          : byDefault.dump();
        if (type == "INT") {
            checkNumber(definition, value, name);
        } else {
            checkText(definition, value, name);
        }
        if (type == "PATH") {
            checkPath(definition);
        }
        require(names.emplace("Param." + name, value).second, name + " comes twice");
    }
    for (const auto& [name, value] : values) {
        require(names.contains("Param." + name), "no parameter is called " + name);
    }
    return names;
}

/// "1-3,5,7-20:2"
std::vector<int64_t> numbersOf(const std::string& text) {
    std::vector<int64_t> numbers;
    const std::regex element(R"((-?[0-9]+)(?:-(-?[0-9]+)(?::([0-9]+))?)?)");
    const std::regex comma(",");
    for (std::sregex_token_iterator each(text.begin(), text.end(), comma, -1), end; each != end; ++each) {
        const std::string piece = *each;
        std::smatch match;
        require(std::regex_match(piece, match, element), "the range " + text);
        const int64_t first = std::stoll(match[1]);
        const int64_t last = match[2].matched ? std::stoll(match[2]) : first;
        const int64_t step = match[3].matched ? std::stoll(match[3]) : 1;
        require(last >= first && step >= 1, "the range " + text);
        for (int64_t number = first; number <= last; number += step) {
            require(std::find(numbers.begin(), numbers.end(), number) == numbers.end(),
                    "an overlap in " + text);
            numbers.push_back(number);
        }
    }
    return numbers;
}

/// The values of a step's one parameter, by its name; a step without any is one task.
std::vector<Names> tasksOf(const Json& step, const Names& names) {
    if (!step.contains("parameterSpace")) {
        return {names};
    }
    const Json& space = step["parameterSpace"];
    requireMembers(space, {"taskParameterDefinitions"}, {}, "parameterSpace");
    require(space["taskParameterDefinitions"].size() == 1, "one task parameter");
    const Json& definition = space["taskParameterDefinitions"][0];
    requireMembers(definition, {"name", "type", "range"}, {}, "a task parameter");
    require(definition["type"] == "INT", "a task parameter's type");
    std::vector<Names> tasks;
    for (const int64_t number : numbersOf(resolved(definition["range"], names))) {
        Names task = names;
        task["Task.Param." + identifierIn(definition)] = std::to_string(number);
        tasks.push_back(std::move(task));
    }
    require(tasks.size() <= 1048576, "too many tasks");
    return tasks;
}

void checkCancelation(const Json& action) {
    if (!action.contains("cancelation")) {
        return;
    }
    const Json& cancelation = action["cancelation"];
    requireMembers(cancelation, {"mode"}, {"notifyPeriodInSeconds"}, "cancelation");
    require(cancelation["mode"] == "NOTIFY_THEN_TERMINATE", "the mode of cancelation");
    const int seconds = cancelation.value("notifyPeriodInSeconds", 30);
    require(seconds >= 1 && seconds <= 600, "notifyPeriodInSeconds is 1 to 600");
}

std::vector<std::string> wordsOf(const Json& step, const Names& names) {
    requireMembers(step.at("script"), {"actions"}, {}, "script");
    requireMembers(step["script"]["actions"], {"onRun"}, {}, "actions");
    const Json& action = step["script"]["actions"]["onRun"];
    requireMembers(action, {"command"}, {"args", "cancelation"}, "onRun");
    checkCancelation(action);
    std::vector<std::string> words = {resolved(textIn(action, "command", 1024), names)};
    for (const Json& word : action.value("args", Json::array())) {
        require(word.is_string(), "an argument that is no text");
        words.push_back(resolved(word, names));
    }
    return words;
}

} // namespace

std::vector<TemplateTask> expandedTemplate(const Json& text,
                                           const std::map<std::string, std::string>& values) {
    requireMembers(text, {"specificationVersion", "name", "steps"},
                   {"description", "parameterDefinitions", "$schema"}, "a template");
    require(text["specificationVersion"] == "jobtemplate-2023-09", "specificationVersion");
    const Names names = parametersOf(text, values);
    const std::string name = resolved(textIn(text, "name", 128), names);
    require(!name.empty() && name.size() <= 128, "the job's name");
    require(text["steps"].is_array() && !text["steps"].empty(), "steps");
    std::vector<TemplateTask> tasks;
    std::set<std::string> known;
    for (const Json& step : text["steps"]) {
        requireMembers(step, {"name", "script"}, {"description", "dependencies", "parameterSpace"}, "a step");
        const std::string stepName = textIn(step, "name", 64);
        for (const Json& dependency : step.value("dependencies", Json::array())) {
            requireMembers(dependency, {"dependsOn"}, {}, "a dependency");
            // The description allows any order; ours is one that it can run in.
            require(known.contains(dependency["dependsOn"]), stepName + " depends on no step before it");
        }
        for (const Names& task : tasksOf(step, names)) {
            tasks.push_back({stepName, wordsOf(step, task)});
        }
        require(known.insert(stepName).second, stepName + " comes twice");
    }
    return tasks;
}

} // namespace kovalune::test

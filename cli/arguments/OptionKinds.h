// The kinds of options that several commands have.
#pragma once

#include "cli/arguments/Arguments.h"
#include "cli/arguments/Parser.h"

#include <charconv>
#include <optional>
#include <string>
#include <string_view>
#include <system_error>
#include <utility>
#include <vector>

namespace kovalune::cli {

inline constexpr char kMayBeInput[] = "may be INPUT";

/// A command's footer.
std::string example(const std::string& line, const std::string& more = {});

/// "NAME takes ..., not 'TEXT'"
[[noreturn]] void refuse(const std::string& name, const std::string& takes, const std::string& text);

/// Decimal digits with a sign before them at the most; the parser's own reading takes 010 for eight.
template <class Number>
bool readWhole(std::string_view text, Number& value) {
    const auto end = std::from_chars(text.data(), text.data() + text.size(), value);
    return end.ec == std::errc() && end.ptr == text.data() + text.size();
}

/// The same of a decimal number with or without a point, whatever the locale; no "inf" and no "nan".
bool readDecimal(std::string_view text, double& value);

OptionSyntax addWhole(CommandSyntax& command, const std::string& name, int& value, int lowest, int highest,
                      const std::string& what);

/// A frame's number, below 0 too.
OptionSyntax addFrameNumber(CommandSyntax& command, const std::string& name, std::optional<int64_t>& value,
                            const std::string& what);

/// The name of a picture, looked at as it is parsed.
void checkedAsRead(const CommandSyntax& command, OptionSyntax option);
void checkedAsWritten(const CommandSyntax& command, OptionSyntax option);
/// Of one beside what the command tells, which goes to a file always.
void checkedAsDrawn(const CommandSyntax& command, OptionSyntax option);

OptionSyntax addInput(CommandSyntax& command, std::string& input);
void addForce(CommandSyntax& command, bool& force);
OptionSyntax addOutput(CommandSyntax& command, std::string& output, bool& force, const std::string& asInput);

void addPlugin(CommandSyntax& command, std::optional<std::string>& plugin);
/// The instruction set; one that the machine lacks is refused.
void addCpu(CommandSyntax& command, std::optional<std::string>& cpu);
void addFactory(CommandSyntax& command, bool& factory);
/// Where the parameters' values come from.
void addSettings(CommandSyntax& command, EffectArguments& effect);
/// Several runs through the effect, one after the other.
void addPasses(CommandSyntax& command, EffectArguments& effect);
void addView(CommandSyntax& command, std::optional<std::string>& view);
void addAlpha(CommandSyntax& command, std::optional<pictures::AlphaKind>& alphaKind);
void addDepth(CommandSyntax& command, std::optional<int>& depth);
/// The type of the written samples.
void addOutDepth(CommandSyntax& command, shots::FrameForm& form);
void addCompression(CommandSyntax& command, pictures::EncodeOptions& encoding);
void addLinear(CommandSyntax& command, bool& linear);
/// The kinds of what the standard input has, and of what goes to the standard output.
void addInFormat(CommandSyntax& command, pictures::DecodeOptions& decoding);
void addOutFormat(CommandSyntax& command, shots::FrameForm& form);
/// Which of an OpenEXR file's pictures is read.
void addExrChoice(CommandSyntax& command, pictures::DecodeOptions& decoding);
/// How large a picture may be that is read.
OptionSyntax addMaxPixels(CommandSyntax& command, pictures::DecodeOptions& decoding);
void addPngLevel(CommandSyntax& command, pictures::EncodeOptions& encoding);

/// Finds one of a few words, without case; throws UsageMistake where `text` is none of them.
std::size_t placeOfChoice(const std::string& name, const std::vector<std::string>& words,
                          const std::string& text);

template <class Value>
using Choices = std::vector<std::pair<std::string, Value>>;

template <class Value>
OptionSyntax addChoice(CommandSyntax& command, const std::string& name, Value& value,
                       const Choices<Value>& choices, const std::string& what) {
    std::vector<std::string> words;
    for (const auto& [word, meant] : choices) {
        words.push_back(word);
    }
    const auto choose = [name, words, choices, &value](const std::string& text) {
        value = choices[placeOfChoice(name, words, text)].second;
    };
    return command.addTaker(name, choose, what);
}

} // namespace kovalune::cli

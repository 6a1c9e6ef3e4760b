// What each command takes: its options and places, which fill its record, and what the parser cannot check.
#pragma once

#include "cli/arguments/Arguments.h"
#include "cli/arguments/Parser.h"

namespace kovalune::cli {

void addRender(CommandSyntax& command, RenderArguments& arguments);
/// Which pictures a command reads and writes.
void addSequence(CommandSyntax& command, SequenceArguments& sequence);
/// Which ones it looks at.
void addRead(CommandSyntax& command, ReadArguments& read);
/// Throws UsageMistake where there is none.
void checkRead(const ReadArguments& read);
void addFrameList(CommandSyntax& command, std::optional<std::vector<int64_t>>& frames);
/// Throws UsageMistake where one of them is missing.
void checkInputAndOutput(const SequenceArguments& sequence);
void checkInputAndOutput(const std::vector<std::string>& inputs, const std::string& output);

void addSheet(CommandSyntax& command, SheetArguments& arguments);
void addSmooth(CommandSyntax& command, SmoothArguments& arguments);
void addColors(CommandSyntax& command, ColorsArguments& arguments);
void addSuggest(CommandSyntax& command, SuggestArguments& arguments);
void addPick(CommandSyntax& command, PickArguments& arguments);
void addCompare(CommandSyntax& command, CompareArguments& arguments);
void addParams(CommandSyntax& command, ParamsArguments& arguments);
void addDefaults(CommandSyntax& command, DefaultsArguments& arguments);
void addInfo(CommandSyntax& command, InfoArguments& arguments);
void addSelfCheck(CommandSyntax& command, SelfCheckArguments& arguments);

// Throw UsageMistake for options that do not go together.
void checkTogether(const RenderArguments& arguments);
void checkTogether(const SheetArguments& arguments);
void checkTogether(const ColorsArguments& arguments);
void checkTogether(const SuggestArguments& arguments);
void checkTogether(const SmoothArguments& arguments);
void checkTogether(const ParamsArguments& arguments);
void checkTogether(const DefaultsArguments& arguments);
void checkTogether(const CompareArguments& arguments);

} // namespace kovalune::cli

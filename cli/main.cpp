// The command `kovalune`: parses the command line and runs what it asks for.

#include "cli/Commands.h"
#include "cli/ExitCode.h"
#include "cli/arguments/Arguments.h"
#include "cli/text/Reporting.h"
#include "cli/text/StandardOutput.h"
#include "render/shots/OutputFile.h"

#include <csignal>

namespace {

using namespace kovalune::cli;

ExitCode printed(const Comparison& comparison) {
    printOut(comparison.text);
    return comparison.same ? ExitCode::kSuccess : ExitCode::kDifferent;
}

/// Whether the picture that the command makes goes there.
bool takesStandardOutput(const Arguments& arguments) {
    return std::visit(
        [](const auto& record) {
            if constexpr (requires { record.sequence; }) {
                return kovalune::shots::isStandardOutput(record.sequence.output);
            } else if constexpr (requires { kovalune::shots::isStandardOutput(record.output); }) {
                return kovalune::shots::isStandardOutput(record.output);
            } else {
                return false;
            }
        },
        arguments);
}

ExitCode run(const Arguments& arguments) {
    if (takesStandardOutput(arguments)) {
        leaveOutputToPictures();
    }
    if (const auto* render = std::get_if<RenderArguments>(&arguments)) {
        return runRender(*render) ? ExitCode::kSuccess : ExitCode::kDifferent;
    } else if (const auto* sheet = std::get_if<SheetArguments>(&arguments)) {
        runSheet(*sheet);
    } else if (const auto* smooth = std::get_if<SmoothArguments>(&arguments)) {
        runSmooth(*smooth);
    } else if (const auto* params = std::get_if<ParamsArguments>(&arguments)) {
        printOut(paramsText(*params));
    } else if (const auto* defaults = std::get_if<DefaultsArguments>(&arguments)) {
        printOut(defaultsText(*defaults));
    } else if (const auto* info = std::get_if<InfoArguments>(&arguments)) {
        printOut(infoText(*info));
    } else if (const auto* selfCheck = std::get_if<SelfCheckArguments>(&arguments)) {
        runSelfCheck(*selfCheck);
    } else if (const auto* colors = std::get_if<ColorsArguments>(&arguments)) {
        printOut(colorsText(*colors));
    } else if (const auto* suggest = std::get_if<SuggestArguments>(&arguments)) {
        return runSuggest(*suggest) ? ExitCode::kSuccess : ExitCode::kDifferent;
    } else if (const auto* pick = std::get_if<PickArguments>(&arguments)) {
        printOut(pickText(*pick));
    } else if (const auto* compare = std::get_if<CompareArguments>(&arguments)) {
        return printed(compareFiles(*compare));
    } else {
        printOut(std::get<ShownText>(arguments).text);
    }
    return ExitCode::kSuccess;
}

} // namespace

int main(int argc, char** argv) {
#ifdef SIGXFSZ
    // A file that grows past the limit is then an error of the write, which removes what was written.
    std::signal(SIGXFSZ, SIG_IGN);
#endif
    return reporting([argc, argv] { return run(parseArguments(argc, argv)); });
}

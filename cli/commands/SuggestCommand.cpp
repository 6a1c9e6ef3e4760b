#include "cli/Commands.h"

#include "cli/commands/LookedPictures.h"
#include "cli/text/Reporting.h"
#include "cli/text/StandardOutput.h"
#include "pictures/PictureFile.h"
#include "pictures/PixelValues.h"
#include "render/shots/AtomicFile.h"
#include "render/suggest/Suggestion.h"
#include "text/Failure.h"
#include "text/MessageText.h"
#include "text/NumberText.h"

#include <span>

namespace kovalune::cli {

namespace {

void checkOutput(const SuggestArguments& arguments) {
    if (pictures::formatOfName(arguments.output)) {
        throw text::Failure(text::FailureKind::kUsage,
                            "cannot write " + text::inQuotes(arguments.output) +
                                ": it is the name of a picture, and what is proposed are settings");
    }
    shots::checkWritable(arguments.output, arguments.force);
}

void checkIsNoInput(const SuggestArguments& arguments, const shots::SequencePlan& plan) {
    for (const std::string& file : lookedFiles(plan)) {
        if (shots::nameOneFile(arguments.output, file)) {
            throw text::Failure(text::FailureKind::kUsage,
                                "cannot write " + text::inQuotes(arguments.output) + ": it is the picture " +
                                    text::inQuotes(file) + " of this command");
        }
    }
}

suggest::Suggestion suggestionFor(const SuggestArguments& arguments, const shots::SequencePlan& plan) {
    suggest::SuggestionFigures figures;
    lookAtAll(plan, {arguments.alphaKind, arguments.linear, arguments.decoding},
              [&](const pictures::Picture& picture, std::size_t index) {
                  figures.add(picture, lookedNumber(plan, index));
              });
    return figures.suggestion(lookedName(arguments.pictures));
}

/// A line a pair, by pass and stage.
std::string pairsText(const suggest::Suggestion& suggestion) {
    const auto nameOf = [&suggestion](std::size_t place) {
        return pictures::hexText(
            pictures::nearestRgb(suggestion.regions[place].color, pictures::SampleType::kUint8));
    };
    std::string text;
    for (std::size_t pass = 0; pass < suggestion.passes.size(); ++pass) {
        const std::string where =
            suggestion.passes.size() > 1 ? "pass " + std::to_string(pass + 1) + ", " : std::string();
        std::size_t number = 0;
        for (const suggest::SuggestedStage& stage : suggestion.passes[pass].stages) {
            ++number;
            for (const pictures::ColorPair& pair : stage.pairs) {
                text += nameOf(pair.second) + (pair.isHighlight() ? "  highlight on  " : "  shadow of     ") +
                        nameOf(pair.neighbour) + "  " + where + "Process " + std::to_string(number) +
                        ", Boundary Blur " + text::shortestText(stage.boundaryBlur) + '\n';
            }
        }
    }
    return text;
}

} // namespace

bool runSuggest(const SuggestArguments& arguments) {
    checkOutput(arguments);
    const shots::SequencePlan plan = lookedPlan(arguments.pictures);
    checkIsNoInput(arguments, plan);
    const suggest::Suggestion suggestion = suggestionFor(arguments, plan);
    if (suggestion.passes.empty()) {
        tell("no two colours of " + text::inQuotes(lookedName(arguments.pictures)) +
             " look like light and shadow; nothing is written");
        return false;
    }
    const std::string& settings = suggestion.settings;
    shots::writeAtomically(arguments.output,
                           std::span(reinterpret_cast<const uint8_t*>(settings.data()), settings.size()));
    printOut(pairsText(suggestion));
    return true;
}

} // namespace kovalune::cli

#include "cli/Commands.h"

#include "cli/commands/BuildFacts.h"
#include "cli/text/StandardOutput.h"
#include "effect/Kovalune.h"
#include "render/LinkedEffect.h"
#include "render/LoadedEffect.h"
#include "render/selfcheck/SelfCheck.h"
#include "render/shots/Machine.h"
#include "text/Failure.h"
#include "text/MessageText.h"
#include "text/NumberText.h"

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace kovalune::cli {

namespace {

std::string line(std::string title, const std::string& text) {
    constexpr std::size_t kWidth = 16;
    title.resize(kWidth, ' ');
    return title + text + '\n';
}

std::string machineText(const std::optional<std::string>& plugin) {
    const BuildFacts facts = buildFacts();
    return line("Effect", plugin ? text::shown(*plugin) : "built in") +
           line("Command version", facts.version) + line("Compiler", facts.compiler) +
           line("System", facts.system) + line("Processor", facts.processor);
}

selfcheck::CheckOutcome check(const SelfCheckArguments& arguments, host::EffectModule& effect,
                              const std::string& title) {
    const auto start = std::chrono::steady_clock::now();
    host::Host host(render::toolOptions(std::min(shots::usableProcessors(), render::kMostThreads)));
    selfcheck::CheckOutcome outcome = selfcheck::checkScenes(
        effect, host,
        {.every = arguments.quick ? selfcheck::kQuickStep : 1, .framesAlone = arguments.plugin.has_value()});
    const double seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
    printOut(line(title, outcome.first ? "differs: " + outcome.first->scene
                                       : std::to_string(outcome.scenes) + " scenes as everywhere, " +
                                             text::fixedText(seconds, 1) + " s"));
    return outcome;
}

/// An effect from a file chooses its set itself.
std::vector<std::string> setsToCheck(const SelfCheckArguments& arguments) {
    if (arguments.plugin) {
        return {"its own set"};
    }
    return arguments.quick ? std::vector{instructionSet()} : instructionSets();
}

} // namespace

void runSelfCheck(const SelfCheckArguments& arguments) {
    const FactoryDefaultsScope factory;
    // Every scene has a session of its own, and an effect that was set down renders no more.
    std::optional<host::EffectModule> loaded;
    if (arguments.plugin) {
        render::hideRememberedDefaultsFromLoaded();
        loaded = render::loadedEffect(*arguments.plugin, host::SetDown::kNever);
    }
    host::EffectModule& effect = loaded ? *loaded : render::linkedEffect();
    printOut(machineText(arguments.plugin));
    std::optional<std::string> mistake;
    for (const std::string& set : setsToCheck(arguments)) {
        if (!arguments.plugin && !useInstructionSet(set)) {
            throw text::Failure(text::FailureKind::kEffect, "this machine has no " + set);
        }
        const selfcheck::CheckOutcome outcome = check(arguments, effect, set);
        if (outcome.first && !mistake) {
            mistake = "with " + set + " the scene " + text::inQuotes(outcome.first->scene) + " gives " +
                      text::shown(outcome.first->found) + ", not " + outcome.first->expected;
        }
    }
    if (mistake) {
        throw text::Failure(text::FailureKind::kEffect, *mistake);
    }
}

} // namespace kovalune::cli

#include "cli/arguments/OptionKinds.h"

#include "cli/files/PictureNames.h"
#include "effect/Kovalune.h"
#include "effect/share/StandardParts.h"
#include "pictures/PictureFile.h"
#include "text/AsciiText.h"
#include "text/MessageText.h"

#include <algorithm>
#include <cmath>

namespace kovalune::cli {

std::string example(const std::string& line, const std::string& more) {
    return "Example:\n  kovalune " + line + (more.empty() ? "" : "\n\n" + more);
}

void refuse(const std::string& name, const std::string& takes, const std::string& text) {
    throw UsageMistake(name + " takes " + takes + ", not " + text::inQuotes(text));
}

bool readDecimal(std::string_view text, double& value) {
    const auto end = fromChars(text.data(), text.data() + text.size(), value);
    return end.ec == std::errc() && end.ptr == text.data() + text.size() && std::isfinite(value);
}

OptionSyntax addWhole(CommandSyntax& command, const std::string& name, int& value, int lowest, int highest,
                      const std::string& what) {
    const auto set = [name, &value, lowest, highest](const std::string& text) {
        int read = 0;
        if (!readWhole(text, read) || read < lowest || read > highest) {
            refuse(name, "a whole number, " + std::to_string(lowest) + " to " + std::to_string(highest),
                   text);
        }
        value = read;
    };
    return command.addTaker(name, set, what).shownAs("N");
}

OptionSyntax addFrameNumber(CommandSyntax& command, const std::string& name, std::optional<int64_t>& value,
                            const std::string& what) {
    const auto set = [name, &value](const std::string& text) {
        constexpr int64_t kFurthest = 1000000000000000;
        int64_t read = 0;
        if (!readWhole(text, read) || read < -kFurthest || read > kFurthest) {
            refuse(name, "a frame's number", text);
        }
        value = read;
    };
    return command.addTaker(name, set, what).shownAs("N");
}

void checkedAsRead(const CommandSyntax& command, OptionSyntax option) {
    option.checkedBy([name = command.name()](const std::string& text) { checkReadName(text, name); });
}

void checkedAsWritten(const CommandSyntax& command, OptionSyntax option) {
    option.checkedBy([name = command.name()](const std::string& text) { checkWriteName(text, name); });
}

void checkedAsDrawn(const CommandSyntax& command, OptionSyntax option) {
    option.checkedBy([name = command.name()](const std::string& text) { checkDrawnName(text, name); });
}

OptionSyntax addInput(CommandSyntax& command, std::string& input) {
    const OptionSyntax option = command.addText(
        "INPUT", input, "The picture to read, - for the standard input: " + pictures::formatNames());
    checkedAsRead(command, option);
    return option;
}

void addForce(CommandSyntax& command, bool& force) {
    command.addFlag("--force", force, "Replace a write-protected file too");
}

OptionSyntax addOutput(CommandSyntax& command, std::string& output, bool& force, const std::string& asInput) {
    OptionSyntax option =
        command.addText("-o,--output", output,
                        "The picture to write; its name's end (" + pictures::usualNameEnds() +
                            ") says the format; " + asInput + "; - for the standard output");
    checkedAsWritten(command, option);
    addForce(command, force);
    return option.shownAs("FILE");
}

void addPlugin(CommandSyntax& command, std::optional<std::string>& plugin) {
    command.addText("--plugin", plugin, "Use the effect of this shared object").shownAs("FILE");
}

void addCpu(CommandSyntax& command, std::optional<std::string>& cpu) {
    const std::vector<std::string> words = {"plain", "sse2", "avx2", "avx512"};
    const auto choose = [words, &cpu](const std::string& text) {
        const std::string word = words[placeOfChoice("--cpu", words, text)];
        const std::vector<std::string> sets = instructionSets();
        if (std::find(sets.begin(), sets.end(), word) == sets.end()) {
            throw UsageMistake("--cpu: this machine has no " + word + ", but " + text::oneOf(sets));
        }
        cpu = word;
    };
    command
        .addTaker(
            "--cpu", choose,
            "Work with this instruction set: plain, sse2, avx2, avx512; default: the widest of the machine. "
            "Pixels are the same")
        .shownAs("SET");
}

void addFactory(CommandSyntax& command, bool& factory) {
    command.addFlag("--factory", factory, "Start from the effect's own defaults, not the remembered ones");
}

void addSettings(CommandSyntax& command, EffectArguments& effect) {
    command
        .addTexts("--set", effect.settings,
                  "Set a parameter; may be given again. Colours are #RRGGBB or r,g,b, check boxes on or off")
        .shownAs("LABEL=VALUE");
    command
        .addTexts("--params", effect.paramsFiles,
                  "Set the parameters of this file first, one LABEL=VALUE a line; implies --factory")
        .checkedBy(checkParamsName)
        .shownAs("FILE");
    addFactory(command, effect.factory);
}

void addPasses(CommandSyntax& command, EffectArguments& effect) {
    command
        .addTexts("--pass", effect.passFiles,
                  "Put the result through the effect once more with the parameters of this file; may be "
                  "given again")
        .checkedBy(checkParamsName)
        .shownAs("FILE");
    command.addText("--until", effect.until, "Leave out the passes after this one").shownAs("NAME");
}

void addView(CommandSyntax& command, std::optional<std::string>& view) {
    command.addText("--view", view, "Choose the View; wins over --set View=...").shownAs("NAME");
}

void addAlpha(CommandSyntax& command, std::optional<pictures::AlphaKind>& alphaKind) {
    addChoice<std::optional<pictures::AlphaKind>>(
        command, "--alpha", alphaKind,
        {{"premultiplied", pictures::AlphaKind::kPremultiplied},
         {"straight", pictures::AlphaKind::kStraight}},
        "Take the files' alpha as this, whatever they say: straight, premultiplied")
        .shownAs("KIND");
}

void addDepth(CommandSyntax& command, std::optional<int>& depth) {
    addChoice<std::optional<int>>(
        command, "--depth", depth, {{"8", 8}, {"16", 16}, {"32", 32}, {"auto", std::nullopt}},
        "Bits a channel to work in: 8, 16, 32 or auto (the file's); the written file has the nearest depth")
        .shownAs("N");
}

void addOutDepth(CommandSyntax& command, shots::FrameForm& form) {
    using pictures::SampleType;
    Choices<std::optional<SampleType>> choices;
    for (const SampleType type :
         {SampleType::kUint8, SampleType::kUint16, SampleType::kHalf, SampleType::kFloat}) {
        choices.emplace_back(pictures::sampleTypeWord(type), type);
    }
    addChoice<std::optional<SampleType>>(
        command, "--out-depth", form.outType, choices,
        "Samples to write, whatever was worked in: 8, 16, half, float, as far as the format has them")
        .shownAs("TYPE");
}

void addCompression(CommandSyntax& command, pictures::EncodeOptions& encoding) {
    const std::vector<std::string> names = pictures::compressionNames();
    Choices<std::string> choices;
    for (const std::string& name : names) {
        choices.emplace_back(name, name);
    }
    addChoice<std::string>(command, "--compression", encoding.compression, choices,
                           "Pack TIFF and OpenEXR files so, as far as the format has it: " +
                               text::oneOf(names) + "; default: as the input, where nothing is lost so")
        .shownAs("NAME");
}

void addLinear(CommandSyntax& command, bool& linear) {
    command.addFlag(
        "--linear", linear,
        "The files' colours are linear light: the effect gets them through the sRGB curve, and what it "
        "changes goes back");
}

void addInFormat(CommandSyntax& command, pictures::DecodeOptions& decoding) {
    addChoice<std::optional<pictures::FileFormat>>(
        command, "--in-format", decoding.format, {{"tga", pictures::FileFormat::kTga}},
        "Take INPUT as tga, which has no beginning of its own, where its name does not say so")
        .shownAs("tga");
}

void addOutFormat(CommandSyntax& command, shots::FrameForm& form) {
    using pictures::FileFormat;
    Choices<std::optional<FileFormat>> choices;
    for (const FileFormat format :
         {FileFormat::kPng, FileFormat::kTiff, FileFormat::kExr, FileFormat::kTga}) {
        choices.emplace_back(pictures::formatWord(format), format);
    }
    addChoice<std::optional<FileFormat>>(
        command, "--format", form.outFormat, choices,
        "What goes to the standard output (-o -): png, tif, exr, tga; all words "
        "go to standard error then")
        .shownAs("KIND");
}

void addExrChoice(CommandSyntax& command, pictures::DecodeOptions& decoding) {
    command
        .addText("--exr-layer", decoding.exrLayer,
                 "Read this layer of an OpenEXR file: NAME stands for NAME.R, NAME.G, NAME.B, NAME.A")
        .shownAs("NAME");
    command
        .addText("--exr-part", decoding.exrPart,
                 "Read this part of an OpenEXR file, by its name or its number from 1; default: the first "
                 "with such channels")
        .shownAs("NAME|N");
}

OptionSyntax addMaxPixels(CommandSyntax& command, pictures::DecodeOptions& decoding) {
    return addWhole(command, "--max-pixels", decoding.mostPixels, 1, pictures::kMostPixels,
                    "Refuse files of more pixels before memory is taken for them, 1 to " +
                        std::to_string(pictures::kMostPixels) + "; default " +
                        std::to_string(pictures::kUsualMostPixels));
}

void addPngLevel(CommandSyntax& command, pictures::EncodeOptions& encoding) {
    addWhole(command, "--png-level", encoding.pngLevel, 0, pictures::kHighestPngLevel,
             "Pack PNG files this hard, 0 not at all to " + std::to_string(pictures::kHighestPngLevel) +
                 "; default " + std::to_string(encoding.pngLevel) + ", quick; " +
                 std::to_string(pictures::kSmallPngLevel) + " makes them half as large");
}

std::size_t placeOfChoice(const std::string& name, const std::vector<std::string>& words,
                          const std::string& text) {
    const auto found = std::find_if(words.begin(), words.end(), [&text](const std::string& word) {
        return text::equalWithoutCase(word, text);
    });
    if (found == words.end()) {
        refuse(name, text::oneOf(words), text);
    }
    return static_cast<std::size_t>(found - words.begin());
}

} // namespace kovalune::cli

#include "tests/docs/Transcript.h"

#include <cctype>
#include <fstream>
#include <stdexcept>

namespace kovalune::test {
namespace {

class Reader {
public:
    explicit Reader(const std::filesystem::path& document) : name_(document.filename().string()) {
        std::ifstream file(document);
        if (!file) {
            throw std::runtime_error("cannot read " + document.string());
        }
        for (std::string line; std::getline(file, line);) {
            ++number_;
            take(line);
        }
        if (inBlock_) {
            fail("the block does not end");
        }
    }

    std::vector<TranscriptCommand> commands() && { return std::move(commands_); }

private:
    void take(const std::string& line) {
        if (line.starts_with("```")) {
            inBlock_ = !inBlock_;
            goesOn_ = isFirst_ = false;
            if (inBlock_) {
                open(line.substr(3));
            }
        } else if (!inBlock_) {
            return;
        } else if (!isConsole_) {
            if (line.starts_with("$ ")) {
                fail("a command in a block that is not marked as ```console");
            }
        } else if (goesOn_) {
            commands_.back().command += '\n' + line;
            goesOn_ = line.ends_with('\\');
        } else if (line.starts_with("$ ")) {
            commands_.push_back(
                {.line = number_, .command = line.substr(2), .printed = {}, .varies = varies_});
            goesOn_ = line.ends_with('\\');
            isFirst_ = false;
        } else if (isFirst_) {
            fail("text before the block's first command");
        } else {
            commands_.back().printed += line + '\n';
        }
    }

    void open(const std::string& mark) {
        isConsole_ = isFirst_ = mark.starts_with("console");
        varies_ = mark == "console varies";
        if (isConsole_ && !varies_ && mark != "console") {
            fail("a block marked as '" + mark + "'; it takes 'console' or 'console varies'");
        }
    }

    [[noreturn]] void fail(const std::string& reason) const {
        throw std::runtime_error(name_ + ':' + std::to_string(number_) + ": " + reason);
    }

    std::string name_;
    int number_ = 0;
    bool inBlock_ = false;
    bool isConsole_ = false;
    bool isFirst_ = false; ///< no command of the block came yet
    bool goesOn_ = false;  ///< the next line is still of the command
    bool varies_ = false;
    std::vector<TranscriptCommand> commands_;
};

} // namespace

std::vector<TranscriptCommand> transcriptOf(const std::filesystem::path& document) {
    return Reader(document).commands();
}

std::string withoutNumbers(const std::string& text) {
    std::string result;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const auto isDigit = [&](std::size_t at) {
            return at < text.size() && std::isdigit(static_cast<unsigned char>(text[at])) != 0;
        };
        if (!isDigit(i)) {
            result += text[i];
            continue;
        }
        while (isDigit(i + 1) || (i + 1 < text.size() && text[i + 1] == '.' && isDigit(i + 2))) {
            ++i;
        }
        result += '#';
    }
    return result;
}

} // namespace kovalune::test

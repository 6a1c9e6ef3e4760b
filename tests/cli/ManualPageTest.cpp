// The manual page: it has a section for every sub-command with all its options and no other, and is a page that can be read.

#include "tests/cli/CommandHelp.h"
#include "tests/cli/CommandProcess.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <set>
#include <sstream>

namespace kovalune::test {
namespace {

std::vector<std::string> pageLines() {
    const std::vector<uint8_t> bytes = bytesOf(KOVALUNE_MANUAL_PAGE);
    std::istringstream text(std::string(bytes.begin(), bytes.end()));
    std::vector<std::string> lines;
    for (std::string line; std::getline(text, line);) {
        lines.push_back(line);
    }
    return lines;
}

std::string unescaped(std::string text) {
    for (std::size_t at = 0; (at = text.find("\\-", at)) != std::string::npos;) {
        text.erase(at, 1);
    }
    return text;
}

/// What stands in bold at the start of an item, by section; the start of the page has the section "".
std::map<std::string, std::vector<std::string>> itemsBySection() {
    std::map<std::string, std::vector<std::string>> items;
    std::string section;
    bool isItem = false;
    for (const std::string& line : pageLines()) {
        if (line.starts_with(".SS ")) {
            section = line.substr(4);
        } else if (isItem && line.starts_with("\\fB")) {
            std::istringstream names(unescaped(line.substr(3, line.find("\\fR") - 3)));
            for (std::string name; std::getline(names >> std::ws, name, ',');) {
                items[section].push_back(name);
            }
        }
        isItem = line == ".TP";
    }
    return items;
}

std::vector<std::string> optionsAmong(const std::vector<std::string>& items) {
    std::vector<std::string> options;
    std::copy_if(items.begin(), items.end(), std::back_inserter(options),
                 [](const std::string& item) { return item.starts_with("-"); });
    std::sort(options.begin(), options.end());
    return options;
}

TEST(ManualPage, HasTheOptionsOfEverySubCommandAndNoOther) {
    const auto items = itemsBySection();
    for (const std::string& command : subCommands()) {
        ASSERT_TRUE(items.contains(command)) << command;
        EXPECT_EQ(optionsAmong(items.at(command)), optionsOf(command)) << command;
    }
    EXPECT_EQ(optionsAmong(items.at("")), optionsOf());
    EXPECT_EQ(items.size(), subCommands().size() + 1);
}

TEST(ManualPage, NamesTheVersion) {
    const std::vector<std::string> lines = pageLines();
    EXPECT_NE(std::find(lines.begin(), lines.end(),
                        R"(.TH KOVALUNE 1 "" "kovalune )" KOVALUNE_VERSION R"(" "User Commands")"),
              lines.end());
}

TEST(ManualPage, UsesTheMacrosOfManualPagesAlone) {
    const std::set<std::string> known = {".TH", ".SH", ".SS", ".TP", ".PP",  ".EX",
                                         ".EE", ".B",  ".I",  ".RI", ".\\\""};
    for (const std::string& line : pageLines()) {
        if (line.starts_with(".") || line.starts_with("'")) {
            EXPECT_TRUE(known.contains(line.substr(0, line.find(' ')))) << line;
        }
        EXPECT_EQ(unescaped(line).find("\\\\"), std::string::npos) << line;
    }
}

} // namespace
} // namespace kovalune::test

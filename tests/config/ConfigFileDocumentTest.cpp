#include "config/ConfigView.h"
#include "config/FileText.h"
#include "support/Capture.h"
#include "support/Scratch.h"

#include <kelvobase/TraceStream.h>

#include <gtest/gtest.h>

#include <sstream>
#include <vector>

// Every example of the page on the file format, read as the page says and, where it says so, saved or refused.

namespace KelvoBase::test
{

namespace
{

/// A block of the page: what stands behind its fence, and its lines.
struct Block
{
    std::string kind;
    std::string text;
};

std::vector<Block> blocksOfThePage()
{
    const std::string fence = "```";
    std::vector<Block> blocks;
    bool inside = false;
    std::istringstream page(fileText(CONFIG_FILE_PAGE));
    for (std::string line; std::getline(page, line);) {
        if (line.starts_with(fence)) {
            inside = !inside;
            if (inside) {
                blocks.push_back({line.substr(fence.size()), ""});
            }
        } else if (inside) {
            blocks.back().text += line + "\n";
        }
    }
    return blocks;
}

std::string refusalOf(ConfigFile& config, const ResourceLocation& file)
{
    const TraceCapture trace(Trace::fail);
    try {
        config.parseFile(file);
    } catch (const OperationFailedException&) {
        std::string text;
        std::istringstream lines(trace.text());
        for (std::string line; std::getline(lines, line);) {
            text += line.substr(std::string("|-- ").size()) + "\n";
        }
        return text;
    }
    return "";
}

} // namespace

TEST(ConfigFileDocumentTest, ExamplesAreTrue)
{
    const ScratchDirectory scratch;
    const ResourceLocation file(scratch.location("file.ini"));
    int seen = 0;
    int saved = 0;
    int refused = 0;
    ConfigFile config;
    std::string example;
    for (const auto& [kind, text] : blocksOfThePage()) {
        if (kind == "ini") {
            example = text;
            scratch.write("file.ini", text);
            continue;
        }
        SCOPED_TRACE(example);
        if (kind == "seen") {
            config.clear();
            config.parseFile(file);
            EXPECT_EQ(listing(config), text);
            ++seen;
        } else if (kind == "saved") {
            config.writeToFile(file);
            EXPECT_EQ(fileText(scratch / "file.ini"), text);
            ++saved;
        } else if (kind == "refused") {
            EXPECT_EQ(refusalOf(config, file), text);
            ++refused;
        } else {
            ADD_FAILURE() << "a block of kind '" << kind << "'";
        }
    }
    EXPECT_EQ(seen, 11);
    EXPECT_EQ(saved, 3);
    EXPECT_EQ(refused, 2);
}

} // namespace KelvoBase::test

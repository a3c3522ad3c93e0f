#include "Karto/Platform/X11/Displays/DisplayNames.h"
#include "Karto/Platform/X11/Displays/Edid.h"

#include "Support/SampleEdid.h"

#include <gmock/gmock.h>
#include <rapidcheck/gtest.h>

#include <algorithm>
#include <map>
#include <set>

namespace karto::x11 {

namespace {

using karto::testing::EdidTag;
using karto::testing::EdidText;
using karto::testing::sampleEdid;
using ::testing::ElementsAre;

Edid edid(std::optional<std::string> name, std::uint32_t number = 0, std::string text = {}) {
    Edid result{.productName = std::move(name), .serial = std::nullopt};
    if (number != 0 || !text.empty()) {
        result.serial = MonitorSerial{.number = number, .text = std::move(text)};
    }
    return result;
}

MonitorLabels piece(const std::string& output, std::uint32_t number = 0, const std::string& text = {},
                    const std::string& model = "Studio") {
    return {.edid = edid(model, number, text), .output = output};
}

std::vector<std::string> names(const std::vector<MonitorLabels>& monitors) { return displayNames(monitors); }

} // namespace

TEST(Edid, saysWhatItsMakerPutIntoIt) {
    struct Case {
        std::uint32_t number = 0;
        std::vector<EdidText> texts;
        Edid wanted;
    };

    const std::vector<Case> cases{
        // Office monitors: both serials, the name among other texts.
        {.number = 0x3054304C,
         .texts = {{.tag = EdidTag::serial, .text = "7XK9P03R0T0L"},
                   {.tag = EdidTag::productName, .text = "OFFICE U2720Q"},
                   {.tag = EdidTag::range, .text = "1V\x1DY<\x01"}},
         .wanted = edid("OFFICE U2720Q", 0x3054304C, "7XK9P03R0T0L")},
        // A filler for a number, the same in all pieces.
        {.number = 0x01010101,
         .texts = {{.text = "Wide 34"}, {.tag = EdidTag::serial, .text = "  0004711"}},
         .wanted = edid("Wide 34", 0x01010101, "  0004711")},
        {.number = 0xFFFFFFFE, .texts = {{.text = "TV"}}, .wanted = edid("TV", 0xFFFFFFFE)},
        // A panel of a laptop names its parts only.
        {.texts = {{.tag = EdidTag::text, .text = "AUO"}, {.tag = EdidTag::text, .text = "B156HAN02.1"}},
         .wanted = edid(std::nullopt)},
        // Filled up against the rules, and letters that are none.
        {.texts = {{.text = std::string("Slim\0\0\0\0\0\0\0\0\0", 13)}}, .wanted = edid("Slim")},
        {.texts = {{.text = "B\xE9ta\x01"}}, .wanted = edid("B?ta?")},
        {.texts = {{.text = "   "}, {.text = "Second"}, {.tag = EdidTag::serial, .text = ""}},
         .wanted = edid("Second")},
    };
    for (const Case& one : cases) {
        SCOPED_TRACE(one.wanted.productName.value_or("no name"));
        EXPECT_EQ(readEdid(sampleEdid(one.number, one.texts)), one.wanted);
    }
}

TEST(Edid, saysNothingWhenItIsCutOffOrIsNone) {
    const auto whole = sampleEdid(5, {{.text = "Studio"}});
    for (std::size_t size = 0; size < whole.size(); ++size) {
        EXPECT_EQ(readEdid(std::span(whole).first(size)), Edid());
    }
    auto headless = whole;
    headless[0] = 1;
    EXPECT_EQ(readEdid(headless), Edid());
    EXPECT_EQ(readEdid(std::vector<std::uint8_t>(256, 0xFF)), Edid());
    // A wrong sum, and more blocks behind it.
    std::vector<std::uint8_t> longer(whole.begin(), whole.end());
    longer.back() += 1;
    longer.resize(512, 0xEE);
    EXPECT_EQ(readEdid(longer), edid("Studio", 5));
}

TEST(DisplayNames, ofOneModelFollowTheSerials) {
    EXPECT_THAT(names({piece("DP-1", 7), piece("DP-2", 3), piece("DP-3", 5)}),
                ElementsAre("Studio (3)", "Studio", "Studio (2)"));
    // The texts where numbers are equal; "9" is lower than "10".
    EXPECT_THAT(names({piece("DP-1", 1, "10"), piece("DP-2", 1, "9")}), ElementsAre("Studio (2)", "Studio"));
    // Those without a serial after those with one; the output decides what is left.
    EXPECT_THAT(names({piece("DP-1"), piece("HDMI-1", 8), piece("DP-2")}),
                ElementsAre("Studio (2)", "Studio", "Studio (3)"));
    EXPECT_THAT(names({piece("HDMI-1", 8, "x"), piece("DP-2", 8, "x")}), ElementsAre("Studio (2)", "Studio"));
}

TEST(DisplayNames, differWhateverMonitorsAreCalled) {
    const MonitorLabels unnamed{.edid = edid(std::nullopt, 4), .output = "Studio"};
    EXPECT_THAT(names({unnamed, piece("DP-1"), piece("DP-2", 1, "", "Studio (2)")}),
                ElementsAre("Studio", "Studio (3)", "Studio (2)"));
    EXPECT_THAT(names({{}, {}, piece("DP-1")}), ElementsAre("", "", "Studio"));
}

RC_GTEST_PROP(DisplayNames, belongToOneMonitorInWhateverOrderTheyAreListed, ()) {
    std::vector<MonitorLabels> monitors;
    const auto count = *rc::gen::inRange(0, 7);
    monitors.reserve(std::size_t(count));
    for (int i = 0; i < count; ++i) {
        monitors.push_back(piece("DP-" + std::to_string(i), *rc::gen::inRange(0U, 3U),
                                 *rc::gen::element<std::string>("", "a"),
                                 *rc::gen::element<std::string>("S", "S (2)", "S (3)", "DP-1")));
    }
    const auto byOutput = [](const std::vector<MonitorLabels>& listed) {
        std::map<std::string, std::string> result;
        const auto given = displayNames(listed);
        for (std::size_t i = 0; i < listed.size(); ++i) {
            result[listed[i].output] = given[i];
        }
        return result;
    };
    const auto given = displayNames(monitors);
    RC_ASSERT(std::set(given.begin(), given.end()).size() == monitors.size());
    const auto before = byOutput(monitors);
    std::ranges::reverse(monitors);
    RC_ASSERT(byOutput(monitors) == before);
}

} // namespace karto::x11

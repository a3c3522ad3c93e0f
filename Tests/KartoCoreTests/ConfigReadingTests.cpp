#include "KartoCore/ConfigReading.h"

#include "Support/Trees.h"

#include <fmt/format.h>
#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <cstdint>
#include <limits>
#include <string>
#include <string_view>

namespace karto {

namespace {

const std::string start = "[profile]\nname='P'\n";
const std::string studio = start + "[[display]]\nname='S'\norientation='landscape'\n";

// "" when the text reads.
std::string failureOf(std::string_view text) {
    const auto config = readConfig(text);
    return config ? "" : config.error().describe();
}

std::string repeated(std::string_view part, std::size_t count) {
    std::string text;
    for (std::size_t i = 0; i < count; ++i) {
        text += part;
    }
    return text;
}

std::string inlineTree(std::size_t splits) {
    return repeated("split={axis='vertical',at=0.5,second={},first={", splits) + repeated("}}", splits);
}

// 0, 1, 2, ... each between the two parts.
std::string numbered(std::string_view before, std::string_view after, std::size_t count) {
    std::string text;
    for (std::size_t i = 0; i < count; ++i) {
        text.append(before).append(std::to_string(i)).append(after);
    }
    return text;
}

// A tree as one table header after the other, outermost split first.
std::string headerTree(std::size_t splits) {
    std::string text;
    std::string path = "display";
    for (std::size_t i = 0; i < splits; ++i) {
        path += ".split";
        text += "[" + path + "]\naxis='vertical'\nat=0.5\nsecond={}\n";
        path += ".first";
    }
    return text + "[" + path + "]\n";
}

TEST(ConfigReading, takesEverySectionAsWritten) {
    const auto config = readConfig(
        "\xEF\xBB\xBF"
        "extra = 1979-05-27\r\n[profile]\r\nname = \"H\\u00F6me\"\r\n"
        "[[display]]\nname = ''\norientation = 'portrait'\norder = 3.0\nOrder = true\n"
        "[[display]]\nname = 'B'\norientation = 'landscape'\norder = 'ignored'\n"
        "split = {axis = 'horizontal', at = 1, first = {}, second = {order = -9223372036854775808}}\n"
        "[hotkeys]\nmodifiers = ['shift', 'shift', 'x']\nkeys = {nextVariant = 'k', odd = ''}\n"
        "[overlay]\ndelay = 2\nbackgroundOpacity = -0.0\nnumberSize = nan\ncolor = ''\n");
    ASSERT_TRUE(config) << config.error().describe();
    EXPECT_EQ(config->profileName, "Höme");
    const std::vector<DisplayLayout> displays{
        testing::portrait("", testing::zone(3)),
        testing::landscape("B",
                           testing::rows(1, {}, testing::zone(std::numeric_limits<std::int64_t>::min())))};
    EXPECT_EQ(config->displays, displays);
    const std::map<std::string, std::string> keys{{"expandZone", "k"}, {"odd", ""}};
    EXPECT_EQ(config->hotkeys, (HotkeysConfig{.modifiers = {"shift", "shift", "x"}, .keys = keys}));
    const auto overlay = config->overlay.value_or(OverlayConfig());
    EXPECT_EQ(overlay.delay, 2);
    EXPECT_TRUE(std::signbit(overlay.backgroundOpacity.value_or(0)));
    EXPECT_TRUE(std::isnan(overlay.numberSize.value_or(0)));
    EXPECT_EQ(overlay.color, "");
}

TEST(ConfigReading, theFirstFailureNamesItsPlace) {
    const std::string inSplit = " at display.Index 0.split";
    const std::vector<std::pair<std::string, std::string>> table{
        {"", "missing \"profile\""},
        {"[[display]]", "missing \"profile\""},
        {"profile = 'P'", "expected a table, found a string at profile"},
        {"[profile]\n[hotkeys]", "missing \"name\" at profile"},
        {"[profile]\nname = 1", "expected a string, found an integer at profile.name"},
        {start + "[[profile.zone]]\norder = 1\n[hotkeys]", "missing \"display\""},
        {start + "[display]", "expected an array, found a table at display"},
        {"display = [{name='', orientation='portrait'}, true]\n" + start,
         "expected a table, found a boolean at display.Index 1"},
        {start + "[[display]]", "missing \"name\" at display.Index 0"},
        {studio + "[[display]]\nname=''", "missing \"orientation\" at display.Index 1"},
        {start + "[[display]]\nname=''\norientation='Landscape'\norder=''",
         R"(expected "landscape" or "portrait", found "Landscape" at display.Index 0.orientation)"},
        {studio + "order = 1.5",
         "expected an integer, found a floating-point number at display.Index 0.order"},
        {studio + "order = 9223372036854775808.0",
         "expected an integer, found a floating-point number at display.Index 0.order"},
        {studio + "split = []", "expected a table, found an array" + inSplit},
        {studio + "split = {}", "missing \"axis\"" + inSplit},
        {studio + "split = {axis='diagonal'}",
         R"(expected "vertical" or "horizontal", found "diagonal")" + inSplit + ".axis"},
        {studio + "split = {axis='vertical'}", "missing \"at\"" + inSplit},
        {studio + "split = {axis='vertical', at='0.5'}",
         "expected a number, found a string" + inSplit + ".at"},
        {studio + "split = {axis='vertical', at=0.5, second={}}", "missing \"first\"" + inSplit},
        {studio + "split = {axis='vertical', at=0.5, first={}}", "missing \"second\"" + inSplit},
        {studio + "split = {axis='vertical', at=0.5, first={}, second={order='1'}}",
         "expected an integer, found a string" + inSplit + ".second.order"},
        {studio + "[overlay]\ncolor=1\n[hotkeys]\nkeys={tidy=1}", "missing \"modifiers\" at hotkeys"},
        {studio + "[hotkeys]\nmodifiers=['shift', 07:32:00]",
         "expected a string, found a time at hotkeys.modifiers.Index 1"},
        {studio + "[hotkeys]\nmodifiers=[]\nkeys={tidy='t', b=[], a={}}",
         "expected a string, found a table at hotkeys.keys.a"},
        {studio + "[overlay]\nnumberSize=1979-05-27\ndelay=true",
         "expected a number, found a boolean at overlay.delay"},
        {studio + "[overlay]\ncolor=1979-05-27T07:32:00Z",
         "expected a string, found a date and time at overlay.color"},
    };
    for (const auto& [text, failure] : table) {
        EXPECT_EQ(failureOf(text), failure) << text;
    }
}

TEST(ConfigReading, noNameOrOtherTextIsLongerThanAllowed) {
    const std::string longest(4096, 'x');
    const std::string hotkeys = studio + "[hotkeys]\nmodifiers=['shift','";
    const std::vector<std::array<std::string, 3>> table{
        {"display=[]\n[profile]\nname='", "'", "profile.name"},
        {start + "[[display]]\norientation='portrait'\nname='", "'", "display.Index 0.name"},
        {hotkeys, "']", "hotkeys.modifiers.Index 1"},
        {hotkeys + "']\nkeys={tidy='", "'}", "hotkeys.keys.tidy"},
        {hotkeys + "']\nkeys={", "='t'}", "hotkeys.keys"},
        {studio + "[overlay]\ncolor='", "'", "overlay.color"},
    };
    for (const auto& [before, after, place] : table) {
        EXPECT_EQ(failureOf(fmt::format("{}{}{}", before, longest, after)), "");
        EXPECT_EQ(failureOf(fmt::format("{}{}x{}", before, longest, after)),
                  "the text is longer than 4096 bytes at " + place);
    }
}

TEST(ConfigReading, textThatIsNotTomlIsRefusedWithItsPlace) {
    const std::vector<std::string> texts{"name",
                                         "= 1",
                                         "a = ",
                                         "a = 'x",
                                         R"(a = """x)",
                                         "a.",
                                         "[a",
                                         "[a.",
                                         "[[a]",
                                         "a = [1,",
                                         "a = {b = 1",
                                         "a=1\na=2",
                                         "[a]\n[a]",
                                         "a=1e999",
                                         "a=1_",
                                         "\a",
                                         "a = 1 # \x01",
                                         R"("\ud800" = 1)",
                                         "a = 99-99",
                                         "a=-",
                                         "a=9223372036854775808",
                                         std::string("\0a = 1", 6)};
    for (const std::string& text : texts) {
        const std::string failure = failureOf(text);
        EXPECT_TRUE(failure.starts_with("not valid TOML in line ")) << text << ": " << failure;
        EXPECT_EQ(failure.find_first_of("\n\a\x01"), std::string::npos) << failure;
    }
    EXPECT_TRUE(
        failureOf("[profile]\nname 'P'").starts_with("not valid TOML in line 2, column 6 — error while "));
}

TEST(ConfigReading, bytesThatAreNotUtf8AreRefused) {
    for (const std::string_view bytes :
         {"\x80", "\xC3", "\xC3(", "\xC0\xAF", "\xE0\x9F\xBF", "\xED\xA0\x80", "\xF0\x8F\xBF\xBF",
          "\xF4\x90\x80\x80", "\xF8\x88\x80\x80\x80", "\xE2\x82"}) {
        EXPECT_EQ(failureOf(start + "# " + std::string(bytes)), "the text is not UTF-8 in line 3");
    }
    EXPECT_EQ(failureOf(studio + "# \xC2\x80 \xED\x9F\xBF \xEF\xBF\xBF \xF0\x90\x80\x80 \xF4\x8F\xBF\xBF"),
              "");
}

TEST(ConfigReading, treesNestNoDeeperThanAllowed) {
    const std::string nesting = "the layout tree is nested deeper than 32 levels at ";
    const std::string tooDeep = nesting + "display.Index 0." + repeated("split.first.", 33) + "split";
    for (const auto tree : {inlineTree, headerTree}) {
        EXPECT_EQ(failureOf(studio + tree(32)), "");
        EXPECT_EQ(failureOf(studio + tree(33)), tooDeep);
        EXPECT_EQ(failureOf(studio + tree(100)), tooDeep);
        EXPECT_EQ(failureOf(studio + tree(400)), nesting + "display");
    }
    const std::string path = repeated("split.first.", 40'000);
    EXPECT_EQ(failureOf(studio + "[display." + path + "x]"), nesting + "display");
    EXPECT_EQ(failureOf(studio + path + "x = 1"), nesting + "display");
    EXPECT_EQ(failureOf("'display' = [{" + path + "x = 1}]"), nesting + "display");
}

TEST(ConfigReading, noTextIsTooMuch) {
    const std::string nested = "tables and arrays are nested deeper than 256 levels in line 2";
    const std::string tables = "the text names too many tables by line ";
    const std::vector<std::pair<std::string, std::string>> table{
        {"\na = " + repeated("[", 500'000), nested},
        {"\n" + repeated("a={", 300'000), nested},
        {"\n" + repeated("a.", 500'000) + "a = 1", nested},
        {"\n[[" + repeated("a.", 500'000) + "a]]", nested},
        {"\ndisplays." + repeated("a . ", 250'000) + "a = 1", nested},
        {repeated("x", maximumConfigBytes + 1),
         "the text is longer than 10485760 bytes, more than any configuration needs"},
        {numbered("[a", ".b]\n", 100'000) + numbered("[a", "]\n", 100'000), tables},
        {numbered("a", ".b=1\n", 50'000) + numbered("a0.c", "=1\n", 50'000), tables},
        {"a=[{a.b=1" + numbered(",a.c", "=1", 100'000) + "}]", tables + "1"},
        {numbered("[[a", "]]\n", 30'000) + numbered("[a1.b", "]\n", 60'000), tables},
    };
    for (const auto& [text, failure] : table) {
        EXPECT_TRUE(failureOf(text).starts_with(failure)) << text.substr(0, 20) << failureOf(text);
    }
}

TEST(ConfigReading, whatOnlyLooksNestedReads) {
    const std::string brackets = repeated("[{.", 300);
    const std::vector<std::string> texts{
        "a = '" + brackets + "'",
        R"(a = "\")" + brackets + "\"",
        "a = ''''" + brackets + "\n'" + brackets + "'''''",
        R"(a = """")" + brackets + R"(\""")" + brackets + R"(""""" # )" + brackets,
        "'" + brackets + "' = ''",
        "# " + brackets,
        "a = [" + repeated("1.5,\n{b.c = 1.5},", 300) + "]",
        numbered("a", " = 1.5\n", 100'000),
        repeated("[[a.b.c]]\nd.e = 1.5\n", 300),
    };
    const std::string before = studio + "[other]\n";
    for (const std::string& text : texts) {
        EXPECT_EQ(failureOf(before + text), "") << text.substr(0, 20);
    }
}

} // namespace

} // namespace karto

#include "KartoCore/TOMLWriter.h"

#include "KartoCore/ConfigReading.h"
#include "KartoCore/HotkeyNamesAsWritten.h"
#include "Support/Trees.h"

#include <fmt/ranges.h>
#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <algorithm>
#include <cstdint>
#include <utility>

namespace karto {

namespace {

using testing::columns, testing::landscape, testing::portrait, testing::rows, testing::zone;

KartoConfig configOf(std::vector<DisplayLayout> displays) {
    return {.profileName = "Home", .displays = std::move(displays), .hotkeys = {}, .overlay = {}};
}

// The text below the header and the profile's name.
std::string bodyOf(const KartoConfig& config) {
    const std::string text = TOMLWriter::write(config);
    const std::string_view start = "[profile]\nname = \"Home\"\n";
    return text.substr(text.find(start) + start.size());
}

TEST(TOMLWriter, treesAndNamesAreWrittenInFull) {
    const LayoutNode inner = rows(1.0 / 3, zone(-2), {});
    EXPECT_EQ(bodyOf(configOf(
                  {portrait("a\"\\\r\t\n\b\a\x7F é🖥", zone(4)), landscape("", columns(1e-05, inner, {}))})),
              R"(
[[display]]
name = "a\"\\\r\t\n\u0008\u0007\u007F é🖥"
orientation = "portrait"
order = 4

[[display]]
name = ""
orientation = "landscape"

[display.split]
axis = "vertical"
at = 1e-05

[display.split.first.split]
axis = "horizontal"
at = 0.3333333333333333

[display.split.first.split.first]
order = -2

[display.split.first.split.second]

[display.split.second]
)");
}

TEST(TOMLWriter, onlyKeysThatDifferFromTheDefaultsAreWritten) {
    using Keys = std::map<std::string, std::string>;
    const std::vector<std::pair<std::optional<Keys>, std::string>> table{
        {std::nullopt, ""},
        {Keys{}, ""},
        {Keys{{"tidy", "t"}}, ""},
        {Keys{{"expandZone", "e"}, {"cycleWindows", "w"}, {"unknown", "t"}},
         "\n  [hotkeys.keys]\n  cycleWindows = \"w\"\n  expandZone = \"e\"\n  unknown = \"t\"\n"},
    };
    for (const auto& [keys, text] : table) {
        KartoConfig config = configOf({});
        config.hotkeys = HotkeysConfig{.modifiers = {}, .keys = keys};
        config.overlay = OverlayConfig();
        EXPECT_EQ(bodyOf(config), "\n[hotkeys]\nmodifiers = []\n" + text + "\n[overlay]\n");
    }
}

rc::Gen<std::string> names() {
    const auto odd = rc::gen::element<std::string>("\x7F", "\u0080", "\u07FF", "\u0800", "\uD7FF", "\uFFFF",
                                                   "\U00010000", "\U0010FFFF", "e\u0301");
    const auto plain = rc::gen::map(rc::gen::inRange('\0', '\x7F'), [](char c) { return std::string(1, c); });
    return rc::gen::map(rc::gen::container<std::vector<std::string>>(rc::gen::oneOf(odd, plain)),
                        [](const auto& parts) { return fmt::format("{}", fmt::join(parts, "")); });
}

rc::Gen<double> numbers(double lower, double upper) {
    return rc::gen::map(rc::gen::arbitrary<std::uint64_t>(), [=](std::uint64_t bits) {
        const double fraction = static_cast<double>(bits) / 0x1p64;
        switch (bits % 4) {
        // Tiny, or the lower end.
        case 0: return std::clamp(fraction * 1e-300, lower, upper);
        case 1: return upper;
        default: return lower + fraction * (upper - lower);
        }
    });
}

rc::Gen<std::optional<std::int64_t>> pins() {
    return rc::gen::oneOf(rc::gen::just(std::optional<std::int64_t>()),
                          rc::gen::cast<std::optional<std::int64_t>>(rc::gen::inRange<std::int64_t>(-3, 12)),
                          rc::gen::cast<std::optional<std::int64_t>>(rc::gen::arbitrary<std::int64_t>()));
}

// A tree whose deepest zone lies under `depth` splits, with a zone or a small tree beside every step.
LayoutNode tree(int depth) {
    if (depth == 0) {
        return zone(*pins());
    }
    LayoutNode deep = tree(depth - 1);
    LayoutNode beside = tree(std::min(depth - 1, *rc::gen::inRange(0, 3)));
    if (*rc::gen::arbitrary<bool>()) {
        std::swap(deep, beside);
    }
    const double at = *numbers(0.01, 0.99);
    return *rc::gen::arbitrary<bool>() ? columns(at, std::move(deep), std::move(beside))
                                       : rows(at, std::move(deep), std::move(beside));
}

template<typename Value>
std::optional<Value> maybe(const rc::Gen<Value>& values) {
    return *rc::gen::arbitrary<bool>() ? std::optional<Value>(*values) : std::nullopt;
}

HotkeysConfig anyHotkeys() {
    std::map<std::string, std::string> keys;
    for (const auto& [command, key] : CommandKey::defaults()) {
        const auto name = std::string(*rc::gen::elementOf(CommandKey::vocabulary));
        if (name != key.name()) {
            keys.emplace(command.caseName(), name);
        }
    }
    HotkeysConfig hotkeys{.modifiers = *rc::gen::container<std::vector<std::string>>(names()), .keys = {}};
    if (*rc::gen::arbitrary<bool>() && !keys.empty()) {
        hotkeys.keys = std::move(keys);
    }
    return hotkeys;
}

KartoConfig anyConfig() {
    KartoConfig config{.profileName = *names(), .displays = {}, .hotkeys = {}, .overlay = {}};
    for (int i = *rc::gen::inRange(1, 4); i > 0; --i) {
        const LayoutNode root = tree(*rc::gen::inRange(0, LayoutNode::maximumDepth + 1));
        config.displays.push_back(*rc::gen::arbitrary<bool>() ? landscape(*names(), root)
                                                              : portrait(*names(), root));
    }
    if (*rc::gen::arbitrary<bool>()) {
        config.hotkeys = anyHotkeys();
    }
    if (*rc::gen::arbitrary<bool>()) {
        config.overlay = OverlayConfig{.delay = maybe(numbers(0, 2)),
                                       .backgroundOpacity = maybe(numbers(0, 1)),
                                       .numberSize = maybe(numbers(8, 240)),
                                       .color = maybe(names())};
    }
    return config;
}

RC_GTEST_PROP(TOMLWriter, whatIsWrittenReadsBackEqual, ()) {
    const KartoConfig config = anyConfig();
    const std::string text = TOMLWriter::write(config);
    const auto read = readConfig(text);
    RC_ASSERT(read.has_value());
    RC_ASSERT(*read == config);
    RC_ASSERT(TOMLWriter::write(*read) == text);
    const auto keys = config.hotkeys ? config.hotkeys->keys : HotkeyNameMigration::KeyTable();
    RC_ASSERT(readHotkeyNamesAsWritten(parseTomlDocument(text)).keys == keys);
}

LayoutNode evenTree(int zones) {
    return zones == 1 ? zone(10'000) : rows(1.0 / 3, evenTree(zones / 2), evenTree(zones - zones / 2));
}

LayoutNode below(int splits, const LayoutNode& node) {
    return splits == 0 ? node : columns(1.0 / 3, zone(), below(splits - 1, node));
}

TEST(TOMLWriter, whatItWritesIsReadBackUpToTenThousandZonesAtTheGreatestDepth) {
    // Even trees of 14 splits.
    const KartoConfig deepest = configOf({portrait("A", below(18, evenTree(9982)))});
    const std::string text = TOMLWriter::write(deepest);
    EXPECT_TRUE(readConfig(text) == deepest);
}

TEST(HotkeyNamesAsWritten, isTolerantOfTheRestOfTheFile) {
    using Keys = HotkeyNameMigration::KeyTable::value_type;
    const std::vector<std::pair<std::string, HotkeyNameMigration::KeyTable>> table{
        {"[hotkeys.keys]\nnextVariant='k'\nexpandZone='j'", Keys{{"nextVariant", "k"}, {"expandZone", "j"}}},
        {"display=1\n[hotkeys]\nmodifiers=1\nkeys={}", Keys{}},
        {"hotkeys=1", std::nullopt},
        {"[hotkeys]", std::nullopt},
        {"[[hotkeys.keys]]\nnextVariant='k'", std::nullopt},
        {"[hotkeys.keys]\nnextVariant='k'\ntidy=1", std::nullopt},
        {"[hotkeys.keys]\nnextVariant='k'\n\xFF", std::nullopt},
        {"[hotkeys.keys]\nnextVariant='k'\n=", std::nullopt},
    };
    for (const auto& [text, keys] : table) {
        EXPECT_EQ(readHotkeyNamesAsWritten(parseTomlDocument(text)).keys, keys) << text;
    }
}

} // namespace

} // namespace karto

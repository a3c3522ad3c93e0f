#include "KartoCore/ConfigReading.h"

#include "KartoCore/HotkeyNameMigration.h"
#include "KartoCore/TomlTables.h"

#include <fmt/format.h>

#include <array>
#include <cmath>
#include <cstdint>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

namespace karto {

namespace {

constexpr std::string_view typeName(toml::node_type type) {
    switch (type) {
    case toml::node_type::table: return "a table";
    case toml::node_type::array: return "an array";
    case toml::node_type::string: return "a string";
    case toml::node_type::integer: return "an integer";
    case toml::node_type::floating_point: return "a floating-point number";
    case toml::node_type::boolean: return "a boolean";
    case toml::node_type::date: return "a date";
    case toml::node_type::time: return "a time";
    case toml::node_type::date_time: return "a date and time";
    case toml::node_type::none: break;
    }
    return "nothing";
}

// How a value of one type is read: the type as a sentence has it, and the value of a node, absent when the
// node is something else.
template<typename Value>
struct Form;

template<>
struct Form<std::string> {
    static constexpr std::string_view name = typeName(toml::node_type::string);

    static std::optional<std::string> read(const toml::node& node) { return node.value_exact<std::string>(); }
};

template<>
struct Form<double> {
    static constexpr std::string_view name = "a number";

    static std::optional<double> read(const toml::node& node) {
        if (const auto whole = node.value_exact<std::int64_t>()) {
            return static_cast<double>(*whole);
        }
        return node.value_exact<double>();
    }
};

template<>
struct Form<std::int64_t> {
    static constexpr std::string_view name = typeName(toml::node_type::integer);

    static std::optional<std::int64_t> read(const toml::node& node) {
        const auto real = node.value_exact<double>();
        if (!real) {
            return node.value_exact<std::int64_t>();
        }
        const bool fits = *real >= -0x1p63 && *real < 0x1p63 && std::trunc(*real) == *real;
        return fits ? std::optional(static_cast<std::int64_t>(*real)) : std::nullopt;
    }
};

template<>
struct Form<const toml::table*> {
    static constexpr std::string_view name = typeName(toml::node_type::table);

    static std::optional<const toml::table*> read(const toml::node& node) {
        return node.is_table() ? std::optional(node.as_table()) : std::nullopt;
    }
};

template<>
struct Form<const toml::array*> {
    static constexpr std::string_view name = typeName(toml::node_type::array);

    static std::optional<const toml::array*> read(const toml::node& node) {
        return node.is_array() ? std::optional(node.as_array()) : std::nullopt;
    }
};

// Reads the parts of a document in the order in which its operations are called. The first failure stays;
// from then on every reading is empty, so a caller asks for it once, at the end.
class DocumentReader {
public:
    [[nodiscard]] const std::optional<ReadFailure>& failure() const { return failure_; }

    std::string profileName(const toml::table& root) {
        const auto* const profile = required<const toml::table*>(root, "profile");
        const Step step(path_, "profile");
        return profile == nullptr ? std::string() : required<std::string>(*profile, "name");
    }

    std::vector<DisplayLayout> displays(const toml::table& root) {
        const auto* const tables = required<const toml::array*>(root, "display");
        const Step step(path_, "display");
        std::vector<DisplayLayout> displays;
        forEach<const toml::table*>(tables, [&](const toml::table* table) {
            displays.push_back(
                {.name = required<std::string>(*table, "name"),
                 .orientation =
                     oneOf(*table, "orientation", std::array{Orientation::landscape, Orientation::portrait}),
                 .root = node(*table, 0)});
        });
        return displays;
    }

    std::optional<HotkeysConfig> hotkeys(const toml::table& root) {
        const auto table = optional<const toml::table*>(root, "hotkeys");
        if (!table) {
            return std::nullopt;
        }
        const Step step(path_, "hotkeys");
        return HotkeysConfig{.modifiers = modifiers(**table),
                             .keys = HotkeyNameMigration::applied(keyTable(**table))};
    }

    std::optional<OverlayConfig> overlay(const toml::table& root) {
        const auto table = optional<const toml::table*>(root, "overlay");
        if (!table) {
            return std::nullopt;
        }
        const Step step(path_, "overlay");
        return OverlayConfig{.delay = optional<double>(**table, "delay"),
                             .backgroundOpacity = optional<double>(**table, "backgroundOpacity"),
                             .numberSize = optional<double>(**table, "numberSize"),
                             .color = optional<std::string>(**table, "color")};
    }

private:
    // One more key on the path, as long as it lives.
    class Step {
    public:
        Step(std::vector<std::string>& path, std::string_view key)
            : path_(path) {
            path_.emplace_back(key);
        }

        Step(const Step&) = delete;
        Step(Step&&) = delete;
        Step& operator=(const Step&) = delete;
        Step& operator=(Step&&) = delete;

        ~Step() { path_.pop_back(); }

    private:
        std::vector<std::string>& path_;
    };

    void fail(ReadFailure failure) {
        if (!failure_) {
            failure_ = std::move(failure);
        }
    }

    // At the value or table that the path leads to.
    void fail(ReadFailure::Kind kind, std::string description) {
        fail({.kind = kind, .path = path_, .key = {}, .description = std::move(description)});
    }

    // The node that the path leads to.
    template<typename Value>
    std::optional<Value> value(const toml::node& node) {
        auto value = Form<Value>::read(node);
        if (!value) {
            fail(ReadFailure::Kind::typeMismatch,
                 fmt::format("expected {}, found {}", Form<Value>::name, typeName(node.type())));
        }
        if constexpr (std::is_same_v<Value, std::string>) {
            if (value) {
                requireFitting(*value);
            }
        }
        return value;
    }

    void requireFitting(std::string_view text) {
        if (text.size() > maximumTextBytes) {
            fail(ReadFailure::Kind::corruptedData,
                 fmt::format("the text is longer than {} bytes", maximumTextBytes));
        }
    }

    template<typename Value>
    std::optional<Value> optional(const toml::table& table, std::string_view key) {
        const toml::node* const node = table.get(key);
        if (failure_ || node == nullptr) {
            return std::nullopt;
        }
        const Step step(path_, key);
        return value<Value>(*node);
    }

    // The null value after a failure.
    template<typename Value>
    Value required(const toml::table& table, std::string_view key) {
        if (!table.contains(key)) {
            fail({.kind = ReadFailure::Kind::missingKey,
                  .path = path_,
                  .key = std::string(key),
                  .description = {}});
        }
        return optional<Value>(table, key).value_or(Value{});
    }

    // Hands over every element of the array that the path leads to; null holds none.
    template<typename Value, typename Body>
    void forEach(const toml::array* array, const Body& body) {
        for (std::size_t i = 0; array != nullptr && !failure_ && i < array->size(); ++i) {
            const Step step(path_, fmt::format("Index {}", i));
            if (auto element = value<Value>((*array)[i])) {
                body(*std::move(element));
            }
        }
    }

    // The one of two cases whose raw name the table has under the key.
    template<typename Case>
    Case oneOf(const toml::table& table, std::string_view key, std::array<Case, 2> cases) {
        const auto text = required<std::string>(table, key);
        for (const Case candidate : cases) {
            if (rawName(candidate) == text) {
                return candidate;
            }
        }
        const Step step(path_, key);
        fail(ReadFailure::Kind::corruptedData,
             fmt::format(R"(expected "{}" or "{}", found "{}")", rawName(cases[0]), rawName(cases[1]), text));
        return {};
    }

    // `splitsAbove` counts the splits on the path to the node.
    LayoutNode node(const toml::table& table, int splitsAbove) {
        if (splitsAbove > LayoutNode::maximumDepth) {
            const Step step(path_, "split");
            fail(nestedTooDeeply(path_));
            return {};
        }
        const auto split = optional<const toml::table*>(table, "split");
        if (!split) {
            return ZoneLeaf{.pinnedOrder = optional<std::int64_t>(table, "order")};
        }
        const Step step(path_, "split");
        return Split{.axis = oneOf(**split, "axis", std::array{Axis::vertical, Axis::horizontal}),
                     .at = required<double>(**split, "at"),
                     .first = child(**split, "first", splitsAbove),
                     .second = child(**split, "second", splitsAbove)};
    }

    LayoutNode child(const toml::table& split, std::string_view key, int splitsAbove) {
        const auto* const table = required<const toml::table*>(split, key);
        const Step step(path_, key);
        return table == nullptr ? LayoutNode() : node(*table, splitsAbove + 1);
    }

    std::vector<std::string> modifiers(const toml::table& hotkeys) {
        const auto* const names = required<const toml::array*>(hotkeys, "modifiers");
        const Step step(path_, "modifiers");
        std::vector<std::string> modifiers;
        forEach<std::string>(names, [&](std::string name) { modifiers.push_back(std::move(name)); });
        return modifiers;
    }

    HotkeyNameMigration::KeyTable keyTable(const toml::table& hotkeys) {
        const auto table = optional<const toml::table*>(hotkeys, "keys");
        if (!table) {
            return std::nullopt;
        }
        const Step step(path_, "keys");
        std::map<std::string, std::string> keys;
        for (const auto& entry : **table) {
            requireFitting(entry.first.str());
            keys.emplace(entry.first, required<std::string>(**table, entry.first.str()));
        }
        return keys;
    }

    std::vector<std::string> path_;
    std::optional<ReadFailure> failure_;
};

} // namespace

std::expected<KartoConfig, ReadFailure> readConfig(const TomlDocument& document) {
    if (!document) {
        return std::unexpected(document.error());
    }
    const toml::table& root = (*document)->root;
    DocumentReader reader;
    KartoConfig config{.profileName = reader.profileName(root),
                       .displays = reader.displays(root),
                       .hotkeys = reader.hotkeys(root),
                       .overlay = reader.overlay(root)};
    if (const auto& failure = reader.failure()) {
        return std::unexpected(*failure);
    }
    return config;
}

std::expected<KartoConfig, ReadFailure> readConfig(std::string_view bytes) {
    return readConfig(parseTomlDocument(bytes));
}

} // namespace karto

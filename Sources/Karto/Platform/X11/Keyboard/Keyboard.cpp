#include "Karto/Platform/X11/Keyboard/Keyboard.h"

#include "Karto/Platform/HotKeyCenter.h"
#include "Karto/Platform/ModifierEvents.h"
#include "Karto/Platform/X11/Keyboard/Xkb.h"

#include <X11/keysym.h>

#include <algorithm>
#include <span>

namespace karto::x11 {

namespace {

struct NamedKey {
    std::uint32_t keyCode = 0;
    std::string_view name;
};

// By place: AE is the row of digits, AD, AC and AB the rows of letters below, counted from the left.
constexpr std::array<NamedKey, 43> namedKeys{{
    {18, "AE01"}, {19, "AE02"}, {20, "AE03"}, {21, "AE04"}, {23, "AE05"},  {22, "AE06"},  {26, "AE07"},
    {28, "AE08"}, {25, "AE09"}, {12, "AD01"}, {13, "AD02"}, {14, "AD03"},  {15, "AD04"},  {17, "AD05"},
    {16, "AD06"}, {32, "AD07"}, {34, "AD08"}, {31, "AD09"}, {35, "AD10"},  {0, "AC01"},   {1, "AC02"},
    {2, "AC03"},  {3, "AC04"},  {5, "AC05"},  {4, "AC06"},  {38, "AC07"},  {40, "AC08"},  {37, "AC09"},
    {6, "AB01"},  {7, "AB02"},  {8, "AB03"},  {9, "AB04"},  {11, "AB05"},  {45, "AB06"},  {46, "AB07"},
    {36, "RTRN"}, {48, "TAB"},  {49, "SPCE"}, {53, "ESC"},  {123, "LEFT"}, {124, "RGHT"}, {125, "DOWN"},
    {126, "UP"},
}};

struct ModifierPlace {
    std::uint8_t ModifierMasks::* mask;
    std::uint32_t hotKeyMask;
    std::uint32_t flag;
    // The keys that set it, the best evidence first.
    std::array<xcb_keysym_t, 4> keysyms;
};

constexpr std::array modifierPlaces{
    ModifierPlace{&ModifierMasks::shift, HotKeyMask::shift, ModifierBits::shift, {XK_Shift_L, XK_Shift_R}},
    ModifierPlace{
        &ModifierMasks::command, HotKeyMask::command, ModifierBits::command, {XK_Super_L, XK_Super_R}},
    ModifierPlace{
        &ModifierMasks::control, HotKeyMask::control, ModifierBits::control, {XK_Control_L, XK_Control_R}},
    ModifierPlace{&ModifierMasks::option,
                  HotKeyMask::option,
                  ModifierBits::option,
                  {XK_Alt_L, XK_Alt_R, XK_Meta_L, XK_Meta_R}},
};

constexpr std::array<xcb_keysym_t, 3> lockKeysyms{XK_Caps_Lock, XK_Num_Lock, XK_Scroll_Lock};

// Which keys set which real modifier, and what stands on them.
class ModifierKeys {
public:
    ModifierKeys(const xcb_get_modifier_mapping_reply_t& modifiers,
                 const xcb_get_keyboard_mapping_reply_t& keysyms, xcb_keycode_t firstKey)
        : keys_(xcb_get_modifier_mapping_keycodes(&modifiers),
                static_cast<std::size_t>(xcb_get_modifier_mapping_keycodes_length(&modifiers)))
        , keysPerModifier_(modifiers.keycodes_per_modifier)
        , keysyms_(xcb_get_keyboard_mapping_keysyms(&keysyms),
                   static_cast<std::size_t>(xcb_get_keyboard_mapping_keysyms_length(&keysyms)))
        , keysymsPerKey_(keysyms.keysyms_per_keycode)
        , firstKey_(firstKey) {}

    // The real modifier of the first keysym that sets one. Keymaps hold keys that no keyboard has and that
    // name a modifier on a higher level only: real keys go first.
    [[nodiscard]] std::uint8_t modifierOf(std::span<const xcb_keysym_t> wanted) const {
        for (const std::size_t levels : {std::size_t{1}, keysymsPerKey_}) {
            for (const xcb_keysym_t keysym : wanted) {
                for (std::uint8_t modifier = 0; modifier < realModifierCount; ++modifier) {
                    if (keysym != XCB_NO_SYMBOL && sets(modifier, keysym, levels)) {
                        return static_cast<std::uint8_t>(1U << modifier);
                    }
                }
            }
        }
        return 0;
    }

    // The row of a real modifier, whose unused places hold key code 0.
    [[nodiscard]] std::span<const xcb_keycode_t> keysOf(std::size_t modifier) const {
        return keys_.subspan(modifier * keysPerModifier_, keysPerModifier_);
    }

private:
    [[nodiscard]] bool sets(std::size_t modifier, xcb_keysym_t keysym, std::size_t levels) const {
        return std::ranges::any_of(keysOf(modifier), [&](xcb_keycode_t key) {
            const auto keysyms = keysymsOf(key);
            const auto looked = keysyms.first(std::min(levels, keysyms.size()));
            return std::ranges::find(looked, keysym) != looked.end();
        });
    }

    [[nodiscard]] std::span<const xcb_keysym_t> keysymsOf(xcb_keycode_t key) const {
        const auto start = (std::size_t{key} - firstKey_) * keysymsPerKey_;
        return key < firstKey_ || start >= keysyms_.size() ? std::span<const xcb_keysym_t>()
                                                           : keysyms_.subspan(start, keysymsPerKey_);
    }

    std::span<const xcb_keycode_t> keys_;
    std::size_t keysPerModifier_;
    std::span<const xcb_keysym_t> keysyms_;
    std::size_t keysymsPerKey_;
    xcb_keycode_t firstKey_;
};

// A name of four characters at most, filled up with zeros.
std::string_view text(std::span<const char, 4> name) { return {name.begin(), std::ranges::find(name, '\0')}; }

std::map<std::uint32_t, xcb_keycode_t> keyCodes(const xcb_xkb_get_names_reply_t& reply) {
    xcb_xkb_get_names_value_list_t lists{};
    xcb_xkb_get_names_value_list_unpack(xcb_xkb_get_names_value_list(&reply), reply.nTypes, reply.indicators,
                                        reply.virtualMods, reply.groupNames, reply.nKeys, reply.nKeyAliases,
                                        reply.nRadioGroups, reply.which, &lists);
    const std::span<const xcb_xkb_key_name_t> keys(lists.keyNames, reply.nKeys);
    const std::span<const xcb_xkb_key_alias_t> aliases(lists.keyAliases, reply.nKeyAliases);

    std::map<std::string_view, xcb_keycode_t> byName;
    for (std::size_t i = 0; i < keys.size(); ++i) {
        byName.emplace(text(keys[i].name), static_cast<xcb_keycode_t>(reply.firstKey + i));
    }
    for (const auto& [real, alias] : aliases) {
        if (const auto key = byName.find(text(real)); key != byName.end()) {
            byName.emplace(text(alias), key->second);
        }
    }
    std::map<std::uint32_t, xcb_keycode_t> result;
    for (const auto& [keyCode, name] : namedKeys) {
        if (const auto key = byName.find(name); key != byName.end()) {
            result.emplace(keyCode, key->second);
        }
    }
    return result;
}

ModifierMasks modifierMasks(const ModifierKeys& keys) {
    ModifierMasks masks;
    for (const ModifierPlace& place : modifierPlaces) {
        masks.*place.mask = keys.modifierOf(place.keysyms);
    }
    return masks;
}

// Without those that the program's own modifiers use as well.
std::uint8_t lockMasks(const ModifierKeys& keys, const ModifierMasks& modifiers) {
    unsigned locks = XCB_MOD_MASK_LOCK;
    for (const xcb_keysym_t keysym : lockKeysyms) {
        locks |= keys.modifierOf(std::span(&keysym, 1));
    }
    for (const ModifierPlace& place : modifierPlaces) {
        locks &= ~unsigned{modifiers.*place.mask};
    }
    return static_cast<std::uint8_t>(locks);
}

std::array<std::vector<xcb_keycode_t>, realModifierCount> modifierKeys(const ModifierKeys& keys) {
    std::array<std::vector<xcb_keycode_t>, realModifierCount> result;
    for (std::size_t i = 0; i < result.size(); ++i) {
        std::ranges::copy_if(keys.keysOf(i), std::back_inserter(result.at(i)),
                             [](xcb_keycode_t key) { return key != 0; });
    }
    return result;
}

KeyRepetition keyRepetition(const xcb_xkb_get_controls_reply_t& controls) {
    KeyRepetition repetition{.delay = std::chrono::milliseconds(controls.repeatDelay),
                             .interval = std::chrono::milliseconds(controls.repeatInterval)};
    if ((controls.enabledControls & XCB_XKB_BOOL_CTRL_REPEAT_KEYS) != 0) {
        std::ranges::copy(controls.perKeyRepeat, repetition.keys.begin());
    }
    return repetition;
}

} // namespace

std::optional<std::uint8_t> ModifierMasks::realModifiers(std::uint32_t hotKeyMask) const {
    unsigned real = 0;
    for (const ModifierPlace& place : modifierPlaces) {
        if ((hotKeyMask & place.hotKeyMask) == 0) {
            continue;
        }
        if (this->*place.mask == 0) {
            return std::nullopt;
        }
        real |= this->*place.mask;
    }
    return static_cast<std::uint8_t>(real);
}

std::uint32_t ModifierMasks::modifierBits(std::uint8_t realModifiers) const {
    std::uint32_t bits = 0;
    for (const ModifierPlace& place : modifierPlaces) {
        bits |= (realModifiers & this->*place.mask) != 0 ? place.flag : 0;
    }
    return bits;
}

std::vector<std::uint8_t> subsets(std::uint8_t bits) {
    std::vector<std::uint8_t> result;
    unsigned subset = 0;
    do {
        result.push_back(static_cast<std::uint8_t>(subset));
        subset = (subset - bits) & bits;
    } while (subset != 0);
    return result;
}

std::optional<std::string_view> keyName(std::uint32_t keyCode) {
    const auto* const key = std::ranges::find(namedKeys, keyCode, &NamedKey::keyCode);
    return key == namedKeys.end() ? std::nullopt : std::optional(key->name);
}

std::optional<Keyboard> readKeyboard(Connection& connection) {
    xcb_connection_t* const xcb = connection.get();
    const auto* const setup = xcb_get_setup(xcb);
    const auto keyCount = static_cast<std::uint8_t>(setup->max_keycode - setup->min_keycode + 1);
    const auto namesRequest =
        xcb_xkb_get_names(xcb, coreKeyboard, XCB_XKB_NAME_DETAIL_KEY_NAMES | XCB_XKB_NAME_DETAIL_KEY_ALIASES);
    const auto controlsRequest = xcb_xkb_get_controls(xcb, coreKeyboard);
    const auto modifiersRequest = xcb_get_modifier_mapping(xcb);
    const auto keysymsRequest = xcb_get_keyboard_mapping(xcb, setup->min_keycode, keyCount);

    const auto deadline = deadlineFromNow();
    const auto names = connection.await<xcb_xkb_get_names_reply_t>(namesRequest, deadline);
    const auto controls = connection.await<xcb_xkb_get_controls_reply_t>(controlsRequest, deadline);
    const auto modifiers = connection.await<xcb_get_modifier_mapping_reply_t>(modifiersRequest, deadline);
    const auto keysyms = connection.await<xcb_get_keyboard_mapping_reply_t>(keysymsRequest, deadline);
    if (!names || !controls || !modifiers || !keysyms) {
        return std::nullopt;
    }
    const ModifierKeys keys(*modifiers, *keysyms, setup->min_keycode);
    const auto masks = modifierMasks(keys);
    return Keyboard{.map = {.keyCodes = keyCodes(*names),
                            .modifiers = masks,
                            .locks = lockMasks(keys, masks),
                            .modifierKeys = modifierKeys(keys)},
                    .repetition = keyRepetition(*controls)};
}

std::optional<std::uint32_t> programKeyCode(Connection& connection, xcb_keycode_t key) {
    const auto keyboard = readKeyboard(connection);
    if (keyboard) {
        for (const auto& [code, serverCode] : keyboard->map.keyCodes) {
            if (serverCode == key) {
                return code;
            }
        }
    }
    return std::nullopt;
}

} // namespace karto::x11

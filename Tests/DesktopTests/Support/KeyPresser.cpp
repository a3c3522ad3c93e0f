#include "Support/KeyPresser.h"

#include "Support/Waiting.h"

#include <xcb/xtest.h>
// The extension's header uses a C++ keyword as a name.
#define explicit explicitComponents // NOLINT(clang-diagnostic-keyword-macro)
#include <xcb/xkb.h>
#undef explicit

#include <cstring>
#include <ranges>

namespace karto::desktop {

namespace {

std::map<std::string, xcb_keycode_t> keyCodes(xcb_connection_t* connection) {
    const auto use = xcb_xkb_use_extension(connection, XCB_XKB_MAJOR_VERSION, XCB_XKB_MINOR_VERSION);
    const Reply<xcb_xkb_use_extension_reply_t> usable(xcb_xkb_use_extension_reply(connection, use, nullptr));
    const auto ask = xcb_xkb_get_names(connection, XCB_XKB_ID_USE_CORE_KBD, XCB_XKB_NAME_DETAIL_KEY_NAMES);
    const Reply<xcb_xkb_get_names_reply_t> reply(xcb_xkb_get_names_reply(connection, ask, nullptr));
    if (!usable || !reply) {
        throw std::runtime_error("the keyboard does not tell its key names");
    }
    xcb_xkb_get_names_value_list_t names{};
    xcb_xkb_get_names_value_list_unpack(
        xcb_xkb_get_names_value_list(reply.get()), reply->nTypes, reply->indicators, reply->virtualMods,
        reply->groupNames, reply->nKeys, reply->nKeyAliases, reply->nRadioGroups, reply->which, &names);
    std::map<std::string, xcb_keycode_t> codes;
    for (std::size_t i = 0; i < reply->nKeys; ++i) {
        const char* name = names.keyNames[i].name;
        codes.try_emplace(std::string(name, strnlen(name, 4)), xcb_keycode_t(reply->firstKey + i));
    }
    return codes;
}

} // namespace

KeyPresser::KeyPresser(const XClient& client)
    : client_(client)
    , codes_(keyCodes(client.connection())) {}

xcb_keycode_t KeyPresser::codeOf(const std::string& key) const { return codes_.at(key); }

void KeyPresser::send(std::uint8_t type, const std::string& key) const {
    xcb_test_fake_input(client_.connection(), type, codeOf(key), XCB_CURRENT_TIME, XCB_WINDOW_NONE, 0, 0, 0);
    client_.flush();
}

void KeyPresser::press(const std::string& key) const { send(XCB_KEY_PRESS, key); }

void KeyPresser::release(const std::string& key) const { send(XCB_KEY_RELEASE, key); }

void KeyPresser::tap(const std::string& key) const {
    press(key);
    release(key);
}

void KeyPresser::holdHyper() const {
    for (const std::string& key : hyper) {
        press(key);
    }
}

void KeyPresser::releaseHyper() const {
    for (const std::string& key : hyper | std::views::reverse) {
        release(key);
    }
}

void KeyPresser::chord(const std::string& key) const {
    holdHyper();
    tap(key);
    releaseHyper();
}

std::uint8_t KeyPresser::lockedModifiers() const {
    const auto ask = xcb_xkb_get_state(client_.connection(), XCB_XKB_ID_USE_CORE_KBD);
    const Reply<xcb_xkb_get_state_reply_t> reply(xcb_xkb_get_state_reply(client_.connection(), ask, nullptr));
    return reply ? reply->lockedMods : std::uint8_t{0};
}

void KeyPresser::setLocks(bool on) const {
    // Num Lock sits on Mod2 in every keyboard description that the servers ship.
    setLock("CAPS", XCB_MOD_MASK_LOCK, on);
    setLock("NMLK", XCB_MOD_MASK_2, on);
}

void KeyPresser::setLock(const std::string& key, unsigned modifier, bool on) const {
    const auto isRight = [&] { return ((lockedModifiers() & modifier) != 0) == on; };
    if (!isRight()) {
        tap(key);
    }
    require(key + " to follow its key", isRight);
}

} // namespace karto::desktop

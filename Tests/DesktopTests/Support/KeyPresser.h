#pragma once
// Real key presses through the server's own test extension. A key is named as the keyboard's symbols name its
// place ("AE01" is the key right of the grave, "LWIN" the left logo key), whatever a layout engraves on it.

#include "Support/XClient.h"

#include <map>
#include <string>
#include <vector>

namespace karto::desktop {

class KeyPresser {
public:
    explicit KeyPresser(const XClient& client);

    // The modifiers held in every chord: both hands' worth unless told otherwise.
    std::vector<std::string> hyper{"LFSH", "LWIN", "LCTL", "LALT"};

    // Hyper down, the key down and up, hyper up.
    void chord(const std::string& key) const;

    void holdHyper() const;
    void releaseHyper() const;
    void press(const std::string& key) const;
    void release(const std::string& key) const;
    void tap(const std::string& key) const;

    // Caps Lock and Num Lock by their keys, until both have the wanted state.
    void setLocks(bool on) const;

    // The server's number for the key; throws for a key that this keyboard lacks.
    [[nodiscard]] xcb_keycode_t codeOf(const std::string& key) const;

private:
    void setLock(const std::string& key, unsigned modifier, bool on) const;
    void send(std::uint8_t type, const std::string& key) const;
    [[nodiscard]] std::uint8_t lockedModifiers() const;

    const XClient& client_;
    std::map<std::string, xcb_keycode_t> codes_;
};

} // namespace karto::desktop

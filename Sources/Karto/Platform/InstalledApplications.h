#pragma once
// The applications installed on the desktop, as its menus show them.

#include "KartoCore/Picture.h"

#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace karto {

// Pixels; where there are several pictures of an application, the smallest one of at least that size is
// taken. Enough for a list at three times the usual resolution.
inline constexpr int preferredIconSize = 64;

class InstalledApplications {
public:
    virtual ~InstalledApplications() = default;

    // By what a window says of its application: the class of its windows, or the name of its desktop file
    // without the ending. The name is in the person's language; absent for an application that is not
    // installed.
    virtual std::optional<std::string> name(std::string_view identity) = 0;
    // Null without a picture.
    virtual std::shared_ptr<const Image> icon(std::string_view identity) = 0;
};

} // namespace karto

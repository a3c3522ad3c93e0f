// Reads what two monitors say of themselves from any bytes. Nothing may crash; the texts are such as a
// configuration can name, and the two are told apart whichever is listed first.

#include "Karto/Platform/X11/Displays/DisplayNames.h"
#include "KartoCore/Utf8.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstdlib>

namespace {

using namespace karto;
using namespace karto::x11;

void require(bool holds) {
    if (!holds) {
        std::abort();
    }
}

void requireText(const std::string& text) {
    require(!firstNonText(text) && text.find('\0') == std::string::npos && text.size() <= 13);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::span bytes(data, size);
    const std::size_t half = std::min<std::size_t>(size, edidBlockBytes);
    const std::array<MonitorLabels, 2> both{
        MonitorLabels{.edid = readEdid(bytes.first(half)), .output = "DP-1"},
        MonitorLabels{.edid = readEdid(bytes.subspan(half)), .output = "DP-2"}};
    for (const auto& [edid, output] : both) {
        requireText(edid.productName.value_or(""));
        require(edid.productName != "");
        requireText(edid.serial.value_or(MonitorSerial()).text);
        require(edid.serial != MonitorSerial());
    }
    const auto names = displayNames(both);
    const auto turned = displayNames(std::array{both[1], both[0]});
    require(names[0] != names[1] && names[0] == turned[1] && names[1] == turned[0]);
    return 0;
}

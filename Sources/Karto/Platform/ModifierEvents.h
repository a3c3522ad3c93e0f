#pragma once
// The modifier keys held down, whichever program has the focus.

#include "Karto/Platform/Registration.h"

#include <cstdint>
#include <functional>

namespace karto {

// Bits of ModifierFlags.
namespace ModifierBits {

inline constexpr std::uint32_t shift = 1U << 17U;
inline constexpr std::uint32_t control = 1U << 18U;
inline constexpr std::uint32_t option = 1U << 19U;
inline constexpr std::uint32_t command = 1U << 20U;

} // namespace ModifierBits

// Bits of the keys held. Lock keys are not among them.
struct ModifierFlags {
    std::uint32_t bits = 0;

    bool operator==(const ModifierFlags&) const = default;
};

class ModifierEvents {
public:
    virtual ~ModifierEvents() = default;

    // Reports the whole set after every change. Empty when the set cannot be watched.
    virtual Registration observe(std::function<void(ModifierFlags)> onChange) = 0;

    // The keys held now. What has gone unreported counts after a tenth of a second at most.
    virtual ModifierFlags held() = 0;
};

} // namespace karto

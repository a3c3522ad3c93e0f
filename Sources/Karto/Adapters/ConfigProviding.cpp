#include "Karto/Adapters/ConfigProviding.h"

namespace karto {

CommandKeyMap ConfigProviding::commandKeys() const {
    const auto config = current();
    return config ? config->commandKeys().value_or(CommandKey::defaults()) : CommandKey::defaults();
}

ModifierSet ConfigProviding::hotkeyModifiers() const {
    const auto config = current();
    return config ? config->modifierSet().value_or(ModifierSet::allModifiers) : ModifierSet::allModifiers;
}

} // namespace karto

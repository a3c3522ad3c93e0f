#pragma once
// The tables of a parsed document, as the parser has them. Apart from TomlDocument, so that the parser stays
// within this library.

#include <toml++/toml.h>

namespace karto {

struct TomlTables {
    toml::table root;
};

} // namespace karto

#pragma once
// Other programs of this computer.

#include <string>
#include <vector>

namespace karto {

struct ProgramCall {
    // A name, looked for where the session looks for programs.
    std::string name;
    std::vector<std::string> arguments;
};

// False when there is no such program. It runs on when this one ends.
bool startProgram(const ProgramCall& call);

} // namespace karto

#pragma once
// Other programs of this computer.

#include <functional>
#include <optional>
#include <string>
#include <vector>

class QProcess;

namespace karto {

struct ProgramCall {
    // A name, looked for where the session looks for programs.
    std::string name;
    std::vector<std::string> arguments;
};

// Makes the process ready to start the program. False when there is no such program.
bool prepare(QProcess& program, const ProgramCall& call);

// False when there is no such program. It runs on when this one ends.
bool startProgram(const ProgramCall& call);

// The same, and tells how it ended: its exit status, or absent when it was ended by a signal.
bool startProgram(const ProgramCall& call, std::function<void(std::optional<int> status)> onEnd);

} // namespace karto

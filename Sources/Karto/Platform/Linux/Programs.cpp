#include "Karto/Platform/Linux/Programs.h"

#include <QProcess>
#include <QStandardPaths>

#include <csignal>

namespace karto {

bool startProgram(const ProgramCall& call) {
    const auto path = QStandardPaths::findExecutable(QString::fromStdString(call.name));
    if (path.isEmpty()) {
        return false;
    }
    QStringList arguments;
    for (const auto& argument : call.arguments) {
        arguments.push_back(QString::fromStdString(argument));
    }
    QProcess program;
    program.setProgram(path);
    program.setArguments(arguments);
    // It shall end when it is told to, whatever this program does with such signals.
    program.setChildProcessModifier([] {
        sigset_t none;
        sigemptyset(&none);
        pthread_sigmask(SIG_SETMASK, &none, nullptr);
    });
    return program.startDetached();
}

} // namespace karto

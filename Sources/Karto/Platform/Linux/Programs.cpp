#include "Karto/Platform/Linux/Programs.h"

#include <QProcess>
#include <QStandardPaths>

#include <csignal>
#include <memory>
#include <utility>

namespace karto {

bool prepare(QProcess& program, const ProgramCall& call) {
    const auto path = QStandardPaths::findExecutable(QString::fromStdString(call.name));
    if (path.isEmpty()) {
        return false;
    }
    QStringList arguments;
    for (const auto& argument : call.arguments) {
        arguments.push_back(QString::fromStdString(argument));
    }
    program.setProgram(path);
    program.setArguments(arguments);
    // It shall end when it is told to, whatever this program does with such signals.
    program.setChildProcessModifier([] {
        sigset_t none;
        sigemptyset(&none);
        pthread_sigmask(SIG_SETMASK, &none, nullptr);
    });
    return true;
}

bool startProgram(const ProgramCall& call) {
    QProcess program;
    return prepare(program, call) && program.startDetached();
}

bool startProgram(const ProgramCall& call, std::function<void(std::optional<int>)> onEnd) {
    // Without a parent, which would end it together with this program.
    auto program = std::make_unique<QProcess>();
    program->setProcessChannelMode(QProcess::ForwardedChannels);
    program->setInputChannelMode(QProcess::ForwardedInputChannel);
    if (!prepare(*program, call)) {
        return false;
    }
    auto* running = program.release();
    QObject::connect(running, &QProcess::finished, running,
                     [running, onEnd = std::move(onEnd)](int exitCode, QProcess::ExitStatus status) {
                         running->deleteLater();
                         onEnd(status == QProcess::NormalExit ? std::optional(exitCode) : std::nullopt);
                     });
    running->start();
    return true;
}

} // namespace karto

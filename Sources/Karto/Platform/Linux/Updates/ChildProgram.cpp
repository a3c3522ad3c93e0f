#include "Karto/Platform/Linux/Updates/ChildProgram.h"

#include <QPointer>
#include <QProcess>
#include <QTimer>

#include <memory>
#include <utility>

namespace karto {

namespace {

// What is told of it, until nobody listens any more.
class Listener {
public:
    Listener(QProcess& process, ChildReport report)
        : process_(process)
        , report_(std::make_shared<const ChildReport>(std::move(report))) {}

    void stop() { report_.reset(); }

    void readOutput() {
        const auto bytes = process_.readAllStandardOutput();
        // It may stop listening meanwhile.
        if (const auto report = report_; report && !bytes.isEmpty()) {
            report->onOutput({bytes.data(), static_cast<std::size_t>(bytes.size())});
        }
    }

    // One that has not started has nothing to read.
    void end(std::optional<int> status) {
        if (process_.isOpen()) {
            readOutput();
        }
        if (const auto report = std::exchange(report_, nullptr)) {
            report->onEnd({.status = status,
                           .complaint = process_.isOpen() ? process_.readAllStandardError().toStdString()
                                                          : std::string()});
        }
        process_.deleteLater();
    }

private:
    QProcess& process_;
    std::shared_ptr<const ChildReport> report_;
};

} // namespace

Registration runChild(const ProgramCall& call, ChildReport report, ChildSignal signal) {
    auto* process = new QProcess;
    const auto listener = std::make_shared<Listener>(*process, std::move(report));
    QObject::connect(process, &QProcess::readyReadStandardOutput, process,
                     [listener] { listener->readOutput(); });
    QObject::connect(process, &QProcess::finished, process, [listener](int status, QProcess::ExitStatus how) {
        listener->end(how == QProcess::NormalExit ? std::optional(status) : std::nullopt);
    });
    // This can be known before the program has been started.
    QObject::connect(
        process, &QProcess::errorOccurred, process,
        [listener](QProcess::ProcessError error) {
            if (error == QProcess::FailedToStart) {
                listener->end(std::nullopt);
            }
        },
        Qt::QueuedConnection);
    if (prepare(*process, call)) {
        process->setStandardInputFile(QProcess::nullDevice());
        process->start();
    } else {
        QTimer::singleShot(0, process, [listener] { listener->end(std::nullopt); });
    }
    return Registration([process = QPointer(process), listener, signal] {
        listener->stop();
        if (process) {
            signal == ChildSignal::kill ? process->kill() : process->terminate();
        }
    });
}

} // namespace karto

#include "Karto/Platform/Linux/QtScheduler.h"

#include <QTimer>

#include <memory>
#include <utility>

namespace karto {

Registration QtScheduler::after(std::chrono::milliseconds delay, std::function<void()> task) {
    // The task may end its own registration, and with it this timer, while it runs: deleteLater outlives the
    // call.
    auto* timer = new QTimer;
    timer->setSingleShot(true);
    timer->setTimerType(Qt::PreciseTimer);
    QObject::connect(timer, &QTimer::timeout, [task = std::move(task)] { task(); });
    timer->start(delay);
    return Registration([timer] {
        timer->stop();
        timer->deleteLater();
    });
}

} // namespace karto

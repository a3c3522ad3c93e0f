#include "Karto/Platform/Linux/QtDescriptorWatch.h"

#include <QSocketNotifier>

#include <utility>

namespace karto {

Registration QtDescriptorWatch::watch(int descriptor, std::function<void()> onReadable) {
    // The callback may end its own registration while the notifier calls it.
    auto* notifier = new QSocketNotifier(descriptor, QSocketNotifier::Read);
    QObject::connect(notifier, &QSocketNotifier::activated,
                     [onReadable = std::move(onReadable)] { onReadable(); });
    return Registration([notifier] {
        notifier->setEnabled(false);
        notifier->deleteLater();
    });
}

} // namespace karto

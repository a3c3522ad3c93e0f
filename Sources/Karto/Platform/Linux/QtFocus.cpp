#include "Karto/Platform/Linux/QtFocus.h"

#include <QGuiApplication>
#include <QWindow>

#include <utility>

namespace karto {

void* toolkitConnection() {
    return qGuiApp->nativeInterface<QNativeInterface::QX11Application>()->connection();
}

Registration observeFocus(std::function<void(std::uint32_t)> onMove) {
    const auto observer = QObject::connect(
        qGuiApp, &QGuiApplication::focusWindowChanged, [onMove = std::move(onMove)](const QWindow* window) {
            onMove(window == nullptr ? 0 : static_cast<std::uint32_t>(window->winId()));
        });
    return Registration([observer] { QObject::disconnect(observer); });
}

} // namespace karto

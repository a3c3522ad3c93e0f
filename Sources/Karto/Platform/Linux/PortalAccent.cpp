#include "Karto/Platform/Linux/PortalAccent.h"

#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>

#include <algorithm>
#include <utility>

namespace karto {

namespace {

constexpr auto service = "org.freedesktop.portal.Desktop";
constexpr auto object = "/org/freedesktop/portal/desktop";
constexpr auto interface = "org.freedesktop.portal.Settings";
constexpr auto colorGroup = "org.freedesktop.appearance";
constexpr auto colorKey = "accent-color";

// Absent for any other value, and for channels out of range, which stand for "no preference".
std::optional<RGBColor> readColor(QVariant value) {
    while (value.canConvert<QDBusVariant>()) {
        value = value.value<QDBusVariant>().variant();
    }
    if (!value.canConvert<QDBusArgument>()) {
        return std::nullopt;
    }
    const auto argument = value.value<QDBusArgument>();
    if (argument.currentSignature() != "(ddd)") {
        return std::nullopt;
    }
    RGBColor color;
    argument.beginStructure();
    argument >> color.red >> color.green >> color.blue;
    argument.endStructure();
    const bool isInRange =
        std::ranges::all_of(std::initializer_list<double>{color.red, color.green, color.blue},
                            [](double channel) { return 0 <= channel && channel <= 1; });
    return isInRange ? std::optional(color) : std::nullopt;
}

} // namespace

PortalAccent::PortalAccent(std::function<void()> onChange)
    : onChange_(std::move(onChange)) {
    auto bus = QDBusConnection::sessionBus();
    if (!bus.isConnected()) {
        return;
    }
    bus.connect(service, object, interface, "SettingChanged", this, SLOT(noteSetting(QDBusMessage)));
    auto question = QDBusMessage::createMethodCall(service, object, interface, "Read");
    question << colorGroup << colorKey;
    auto* answer = new QDBusPendingCallWatcher(bus.asyncCall(question), this);
    connect(answer, &QDBusPendingCallWatcher::finished, this, [this, answer] {
        const QDBusPendingReply<QDBusVariant> reply = *answer;
        if (reply.isValid()) {
            setColor(readColor(reply.value().variant()));
        }
        answer->deleteLater();
    });
}

void PortalAccent::noteSetting(const QDBusMessage& change) {
    const auto arguments = change.arguments();
    if (arguments.size() == 3 && arguments[0] == colorGroup && arguments[1] == colorKey) {
        setColor(readColor(arguments[2]));
    }
}

void PortalAccent::setColor(std::optional<RGBColor> color) {
    if (color != color_) {
        color_ = color;
        onChange_();
    }
}

} // namespace karto

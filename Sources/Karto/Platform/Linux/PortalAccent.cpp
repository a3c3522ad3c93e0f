#include "Karto/Platform/Linux/PortalAccent.h"

#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusVariant>
#include <QObject>

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

class PortalAccent::Receiver : public QObject {
    Q_OBJECT

public:
    explicit Receiver(std::function<void()> onChange)
        : onChange_(std::move(onChange)) {
        auto bus = QDBusConnection::sessionBus();
        if (!bus.isConnected()) {
            return;
        }
        bus.connect(service, object, interface, "SettingChanged", this,
                    SLOT(noteSetting(QString, QString, QDBusVariant)));
        auto question = QDBusMessage::createMethodCall(service, object, interface, "Read");
        question << colorGroup << colorKey;
        auto* watcher = new QDBusPendingCallWatcher(bus.asyncCall(question), this);
        connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, watcher] {
            const QDBusPendingReply<QDBusVariant> reply = *watcher;
            if (!reply.isError()) {
                setColor(readColor(reply.value().variant()));
            }
            watcher->deleteLater();
        });
    }

    [[nodiscard]] std::optional<RGBColor> color() const { return color_; }

private slots:

    void noteSetting(const QString& group, const QString& key, const QDBusVariant& value) {
        if (group == colorGroup && key == colorKey) {
            setColor(readColor(value.variant()));
        }
    }

private:
    void setColor(std::optional<RGBColor> color) {
        if (color != color_) {
            color_ = color;
            onChange_();
        }
    }

    std::function<void()> onChange_;
    std::optional<RGBColor> color_;
};

PortalAccent::PortalAccent(std::function<void()> onChange)
    : receiver_(std::make_unique<Receiver>(std::move(onChange))) {}

PortalAccent::~PortalAccent() = default;

std::optional<RGBColor> PortalAccent::color() const { return receiver_->color(); }

} // namespace karto

#include "PortalAccent.moc"

#include "Karto/Settings/Views/DisplayMapView.h"

#include "Karto/Settings/LayoutRows.h"
#include "Karto/Settings/Views/Look.h"

#include <QAbstractButton>
#include <QPainter>

#include <cstddef>

namespace karto {

namespace {

// Between the picture and the edge of its room.
constexpr int pictureMargin = 12;
constexpr qreal boxRadius = 6;
// Displays that touch each other shall not run into one another.
constexpr qreal boxGap = 1.5;
constexpr int textMargin = 8;

QRectF toQRectF(const Rect& rect) { return {rect.x, rect.y, rect.width, rect.height}; }

} // namespace

class DisplayMapView::Box final : public QAbstractButton, public Spoken {
public:
    Box(const DisplayMapBox& box, QWidget* parent)
        : QAbstractButton(parent) {
        setAttribute(Qt::WA_Hover);
        setCheckable(true);
        setEnabled(box.isUsable);
        setFocusPolicy(box.isUsable ? Qt::StrongFocus : Qt::NoFocus);
        setText(QString::fromStdString(box.text));
        setAccessibleName(text());
        setToolTip(text());
    }

    // One of those of the map is chosen.
    [[nodiscard]] QAccessible::Role spokenRole() const override { return QAccessible::RadioButton; }

    void setZones(std::vector<NormRect> zones) {
        zones_ = std::move(zones);
        update();
    }

protected:
    void nextCheckState() override {}

    void paintEvent(QPaintEvent* /*event*/) override {
        const auto colors = look::colors(palette());
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        const QRectF area = QRectF(rect()).adjusted(boxGap, boxGap, -boxGap, -boxGap);
        const auto resting = look::mixed(colors.card, colors.text, underMouse() && isEnabled() ? 0.1 : 0.05);
        painter.setPen(Qt::NoPen);
        painter.setBrush(isChecked() ? look::mixed(colors.card, colors.accent, 0.2) : resting);
        painter.drawRoundedRect(area, boxRadius, boxRadius);
        paintZones(painter, area, look::mixed(colors.card, colors.text, 0.22));
        const qreal border = isChecked() ? 2 : 1;
        painter.setPen(
            QPen(isChecked() ? colors.accent : look::mixed(colors.card, colors.text, 0.3), border));
        painter.setBrush(Qt::NoBrush);
        const qreal inset = border / 2;
        painter.drawRoundedRect(area.adjusted(inset, inset, -inset, -inset), boxRadius - inset,
                                boxRadius - inset);
        paintName(painter, area, colors);
        if (hasFocus()) {
            look::paintFocusRing(painter, area.adjusted(5, 5, -5, -5), boxRadius - 3, colors.accent);
        }
    }

private:
    void paintZones(QPainter& painter, const QRectF& area, const QColor& color) const {
        painter.setPen(QPen(color, 1 / devicePixelRatioF()));
        painter.setBrush(Qt::NoBrush);
        for (const auto& zone : zones_) {
            // The outer edges belong to the display.
            const qreal left = area.left() + area.width() * zone.x;
            const qreal top = area.top() + area.height() * zone.y;
            const qreal right = left + area.width() * zone.w;
            const qreal bottom = top + area.height() * zone.h;
            if (zone.x > 0) {
                painter.drawLine(QPointF(left, top), QPointF(left, bottom));
            }
            if (zone.y > 0) {
                painter.drawLine(QPointF(left, top), QPointF(right, top));
            }
        }
    }

    void paintName(QPainter& painter, const QRectF& area, const look::Colors& colors) const {
        const auto room = area.adjusted(textMargin, 2, -textMargin, -2);
        painter.setFont(look::captionFont());
        painter.setPen(isEnabled() ? colors.text : colors.secondary);
        const auto name =
            painter.fontMetrics().elidedText(text(), Qt::ElideMiddle, static_cast<int>(room.width()));
        const auto bounds = painter.boundingRect(room, Qt::AlignCenter, name).adjusted(-4, -1, 4, 1);
        // Lines do not run through the name.
        painter.save();
        painter.setPen(Qt::NoPen);
        painter.setBrush(
            isChecked() ? look::mixed(colors.card, colors.accent, 0.2)
                        : look::mixed(colors.card, colors.text, underMouse() && isEnabled() ? 0.1 : 0.05));
        painter.drawRoundedRect(bounds, 3, 3);
        painter.restore();
        painter.drawText(room, Qt::AlignCenter, name);
    }

    std::vector<NormRect> zones_;
};

DisplayMapView::DisplayMapView(SettingsModel& model)
    : model_(model) {
    setFixedHeight(mapHeight);
    setAccessibleName("Displays");
    displays_ = model_.status().displays;
    rebuild();
    reconcileSelection(model_);
}

void DisplayMapView::refresh() {
    if (displays_ != model_.status().displays) {
        displays_ = model_.status().displays;
        rebuild();
        // Comes back here when it changes something.
        reconcileSelection(model_);
        return;
    }
    const auto boxes = displayMap(displays_, {.width = 1, .height = 1});
    for (std::size_t index = 0; index < boxes_.size(); ++index) {
        boxes_[index]->setChecked(model_.selectedDisplay() == boxes[index].display);
        std::vector<NormRect> zones;
        for (const auto& row : zoneRows(model_.editor().config(), boxes[index].display)) {
            zones.push_back(row.rect);
        }
        boxes_[index]->setZones(std::move(zones));
    }
}

void DisplayMapView::resizeEvent(QResizeEvent* /*event*/) {
    const Size picture{.width = std::max(1.0, width() - 2.0 * pictureMargin),
                       .height = std::max(1.0, height() - 2.0 * pictureMargin)};
    const auto boxes = displayMap(displays_, picture);
    for (std::size_t index = 0; index < boxes_.size(); ++index) {
        const auto frame = toQRectF(boxes[index].frame).translated(pictureMargin, pictureMargin);
        boxes_[index]->setGeometry(frame.toAlignedRect());
    }
}

void DisplayMapView::rebuild() {
    for (Box* box : boxes_) {
        box->hide();
        box->deleteLater();
    }
    boxes_.clear();
    for (const auto& spec : displayMap(displays_, {.width = 1, .height = 1})) {
        auto* box = new Box(spec, this);
        connect(box, &QAbstractButton::clicked, this,
                [this, display = spec.display] { select(display, model_); });
        box->show();
        boxes_.push_back(box);
    }
    resizeEvent(nullptr);
    refresh();
}

} // namespace karto

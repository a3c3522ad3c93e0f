#include "Karto/Settings/Views/OverlaySectionView.h"

#include "Karto/Settings/OverlaySettings.h"
#include "Karto/Settings/Views/Look.h"

#include <QHBoxLayout>
#include <QPainter>
#include <QVBoxLayout>

#include <cstddef>

namespace karto {

namespace {

constexpr int lineGap = 12;
constexpr int sliderWidth = 220;
constexpr auto widestValue = "100%  ";

// A patch of the colour that it opens a panel for.
class ColorButton final : public QAbstractButton {
public:
    ColorButton() {
        setFocusPolicy(Qt::StrongFocus);
        setAttribute(Qt::WA_Hover);
        setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    }

    void setColor(const QColor& color) {
        color_ = color;
        setAccessibleName("Borders and numbers, " + color.name().toUpper());
        setToolTip(color.name().toUpper());
        update();
    }

    [[nodiscard]] QSize sizeHint() const override { return {56, 36}; }

protected:
    void paintEvent(QPaintEvent* /*event*/) override {
        const auto colors = look::colors(palette());
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        const QRectF area = QRectF(rect()).adjusted(4.5, 4.5, -4.5, -4.5);
        painter.setPen(QPen(look::mixed(colors.card, colors.text, underMouse() ? 0.5 : 0.3), 1));
        painter.setBrush(color_);
        painter.drawRoundedRect(area, look::controlRadius, look::controlRadius);
        if (hasFocus()) {
            look::paintFocusRing(painter, area.adjusted(2, 2, -2, -2), look::controlRadius - 2,
                                 colors.accent);
        }
    }

private:
    QColor color_;
};

QColor toQColor(const RGBColor& color) {
    return QColor::fromRgbF(static_cast<float>(color.red), static_cast<float>(color.green),
                            static_cast<float>(color.blue));
}

} // namespace

OverlaySectionView::OverlaySectionView(SettingsModel& model, std::function<void()> pickColor)
    : model_(model)
    , changes_(model.observe([this] { refresh(); })) {
    auto* lines = new QVBoxLayout(this);
    lines->setContentsMargins(0, 0, 0, 0);
    lines->setSpacing(lineGap - look::ringRoom);
    auto* groups = addInset(*lines);
    groups->setSpacing(lineGap);
    auto* heads = new QVBoxLayout;
    heads->setSpacing(4);
    heads->addWidget(new Text(TextRole::head, "Overlay"));
    heads->addWidget(new Text(TextRole::caption, "Shown while the hyper key's modifiers are held."));
    groups->addLayout(heads);

    auto* group = new Group({});
    for (std::size_t index = 0; index < OverlaySettings::sliders.size(); ++index) {
        addSlider(index, *group);
    }
    auto* color = new ColorButton;
    color_ = color;
    connect(color, &QAbstractButton::clicked, this, [pickColor = std::move(pickColor)] { pickColor(); });
    group->addRow("Borders and numbers", {color});
    groups->addWidget(group);

    reset_ = new Button("Reset to defaults");
    connect(reset_, &QAbstractButton::clicked, this,
            [this] { model_.edit([](LayoutEditor& editor) { editor.resetOverlayAppearance(); }); });
    lines->addWidget(reset_, 0, Qt::AlignLeft);
    lines->addStretch();
    refresh();
}

void OverlaySectionView::addSlider(std::size_t index, Group& group) {
    const auto& spec = OverlaySettings::sliders.at(index);
    SliderView view{.slider = new Slider, .value = new Text(TextRole::secondary)};
    view.slider->setFixedWidth(sliderWidth);
    view.slider->setRange(0, OverlaySettings::lastStep(spec));
    view.slider->setPageStep(10);
    view.slider->setScale(spec.limits.lower * spec.readFactor, spec.step * spec.readFactor);
    view.value->setWordWrap(false);
    view.value->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    view.value->setMinimumWidth(view.value->fontMetrics().horizontalAdvance(widestValue));
    connect(view.slider, &QSlider::valueChanged, this, [this, &spec, slider = view.slider](int position) {
        if (isRefreshing_) {
            return;
        }
        const double value = OverlaySettings::valueAt(spec, position);
        model_.edit([&](LayoutEditor& editor) {
            OverlaySettings::set(spec, value, editor);
            // A key moves it without a gesture that could end.
            if (!slider->isSliderDown()) {
                editor.commitOverlayAppearanceDrag();
            }
        });
    });
    connect(view.slider, &QSlider::sliderReleased, this,
            [this] { model_.edit([](LayoutEditor& editor) { editor.commitOverlayAppearanceDrag(); }); });
    const auto label = QString::fromUtf8(spec.label.data(), static_cast<qsizetype>(spec.label.size()));
    group.addRow(label, {view.slider, view.value});
    sliders_.push_back(view);
}

void OverlaySectionView::refresh() {
    isRefreshing_ = true;
    const auto& config = model_.editor().config();
    const auto appearance = OverlaySettings::appearance(config);
    for (std::size_t index = 0; index < sliders_.size(); ++index) {
        const auto& spec = OverlaySettings::sliders.at(index);
        const double value = appearance.*spec.field;
        const auto text = QString::fromStdString(spec.valueText(value));
        const auto& view = sliders_[index];
        if (!view.slider->isSliderDown()) {
            view.slider->setValue(OverlaySettings::nearestStep(spec, value));
        }
        view.value->setText(text);
        view.slider->setAccessibleName(QString("%1, %2").arg(
            QString::fromUtf8(spec.label.data(), static_cast<qsizetype>(spec.label.size())), text));
    }
    static_cast<ColorButton*>(color_)->setColor(toQColor(appearance.color));
    reset_->setVisible(OverlaySettings::canReset(config));
    isRefreshing_ = false;
}

} // namespace karto

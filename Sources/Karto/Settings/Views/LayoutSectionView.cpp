#include "Karto/Settings/Views/LayoutSectionView.h"

#include "Karto/Settings/LayoutRows.h"
#include "Karto/Settings/Views/DisplayMapView.h"
#include "Karto/Settings/Views/Look.h"
#include "Karto/Settings/Views/RingOrderView.h"
#include "Karto/Settings/Views/ZoneListView.h"

#include <QHBoxLayout>
#include <QMenu>
#include <QVBoxLayout>

#include <utility>

namespace karto {

namespace {

constexpr int lineGap = 12;
constexpr auto usePreset = "Use a preset…";

} // namespace

LayoutSectionView::LayoutSectionView(SettingsModel& model, Actions actions)
    : model_(model)
    , actions_(std::move(actions))
    , changes_(model.observe([this] { refresh(); })) {
    auto* frame = new QVBoxLayout(this);
    frame->setContentsMargins(0, 0, 0, 0);
    rebuild();
}

void LayoutSectionView::rebuild() {
    if (body_ != nullptr) {
        body_->hide();
        body_->deleteLater();
    }
    body_ = new QWidget;
    lines_ = new QVBoxLayout(body_);
    lines_->setContentsMargins(0, 0, 0, 0);
    lines_->setSpacing(lineGap);
    map_ = nullptr;
    content_ = LayoutSettings::content(model_.status());
    switch (content_) {
    case LayoutSettings::Content::legacyFormat: buildLegacyFormat(); break;
    case LayoutSettings::Content::unreadableFile: buildUnreadableFile(); break;
    case LayoutSettings::Content::editor: buildEditor(); break;
    }
    lines_->addStretch();
    layout()->addWidget(body_);
    refresh();
}

void LayoutSectionView::buildLegacyFormat() {
    auto* presets = new MenuButton(usePreset);
    listPresets(*presets->menu(), Orientation::landscape,
                [this](const LayoutPreset& preset) { LayoutSettings::startOver(preset, model_); });
    addMessage("The layout format changed.",
               {new Text(TextRole::body,
                         "This file was written before Karto arranged zones as a tree, and can't be read "
                         "anymore. Pick a scheme below to start again, or open the file to copy your old "
                         "numbers out by hand."),
                presets, new Text(TextRole::caption, "Picking one replaces the old file, once it's saved."),
                openConfigButton()});
}

void LayoutSectionView::buildUnreadableFile() {
    const auto& error = model_.status().loadError;
    auto* text = new Text(TextRole::body, QString::fromStdString(error.value_or(std::string())));
    text->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    addMessage("The config file could not be read.",
               {text,
                new Text(TextRole::caption,
                         "Editing here would replace it with a blank layout — fix the file directly "
                         "instead."),
                openConfigButton()});
}

void LayoutSectionView::addMessage(const QString& head, const std::vector<QWidget*>& parts) {
    auto* card = new Card;
    auto* row = new QWidget;
    auto* lines = new QVBoxLayout(row);
    constexpr int side = look::rowPadding - look::ringRoom;
    lines->setContentsMargins(side, look::rowPadding, side, look::rowPadding - look::ringRoom);
    lines->setSpacing(lineGap);
    addInset(*lines)->addWidget(new Text(TextRole::head, head));
    for (QWidget* part : parts) {
        if (qobject_cast<QAbstractButton*>(part) != nullptr) {
            lines->addWidget(part, 0, Qt::AlignLeft);
        } else {
            addInset(*lines)->addWidget(part);
        }
    }
    card->add(row);
    addInset(*lines_)->addWidget(card);
}

void LayoutSectionView::buildEditor() {
    auto* mapCard = new Card;
    map_ = new DisplayMapView(model_);
    mapCard->add(map_);
    auto* above = addInset(*lines_);
    above->addWidget(mapCard);
    nothingSelected_ = new Text(TextRole::secondary, "Select a display above.");
    above->addWidget(nothingSelected_);

    display_ = new QWidget;
    auto* column = new QVBoxLayout(display_);
    column->setContentsMargins(0, lineGap, 0, 0);
    column->setSpacing(lineGap);
    auto* header = new QHBoxLayout;
    header->setContentsMargins(look::ringRoom, 0, 0, 0);
    name_ = new Text(TextRole::head);
    name_->setElided();
    presets_ = new MenuButton(usePreset);
    presetOrientation_.reset();
    header->addWidget(name_, 1);
    header->addWidget(presets_);
    column->addLayout(header);
    auto* below = addInset(*column);
    warnings_ = new QVBoxLayout;
    warnings_->setSpacing(4);
    shownWarnings_.clear();
    below->addLayout(warnings_);
    zones_ = new ZoneListView(model_);
    below->addWidget(zones_);
    below->addSpacing(look::groupGap - lineGap);
    ring_ = new RingOrderView(model_);
    below->addWidget(ring_);
    lines_->addWidget(display_);
}

Button* LayoutSectionView::openConfigButton() {
    auto* button = new Button("Open Config");
    connect(button, &QAbstractButton::clicked, this, [this] { actions_.openConfig(); });
    return button;
}

void LayoutSectionView::listPresets(QMenu& menu, Orientation orientation,
                                    const std::function<void(const LayoutPreset&)>& onChoice) {
    menu.clear();
    for (const auto& preset : LayoutPresets::all(orientation)) {
        connect(menu.addAction(QString::fromStdString(preset.name)), &QAction::triggered, this,
                [onChoice, &preset] { onChoice(preset); });
    }
}

void LayoutSectionView::refresh() {
    if (content_ != LayoutSettings::content(model_.status())) {
        rebuild();
    } else if (map_ != nullptr) {
        refreshEditor();
    }
}

void LayoutSectionView::refreshEditor() {
    map_->refresh();
    const auto display = model_.selectedDisplay();
    nothingSelected_->setVisible(!display);
    display_->setVisible(display.has_value());
    if (!display) {
        return;
    }
    name_->setText(QString::fromStdString(nameText(display->name)));
    name_->setToolTip(name_->text());
    if (presetOrientation_ != display->orientation()) {
        presetOrientation_ = display->orientation();
        listPresets(*presets_->menu(), display->orientation(),
                    [this](const LayoutPreset& preset) { LayoutSettings::apply(preset, model_); });
    }
    if (auto warnings = LayoutSettings::warnings(model_); warnings != shownWarnings_) {
        shownWarnings_ = std::move(warnings);
        while (auto* item = warnings_->takeAt(0)) {
            item->widget()->deleteLater();
            delete item;
        }
        for (const auto& sentence : shownWarnings_) {
            warnings_->addWidget(
                new Note(Symbol::warning, TextRole::caption, QString::fromStdString(sentence)));
        }
    }
    zones_->refresh();
    ring_->refresh();
    const std::pair selected(display->name, model_.selectedZonePath());
    if (revealed_ != selected) {
        revealed_ = selected;
        if (auto* row = zones_->selectedRow()) {
            actions_.reveal(*row);
        }
    }
}

} // namespace karto

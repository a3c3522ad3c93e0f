#include "Karto/Settings/Views/ShortcutsSectionView.h"

#include "Karto/Settings/Views/Look.h"

#include <QAccessible>
#include <QVBoxLayout>

#include <algorithm>
#include <cstddef>

namespace karto {

namespace {

std::optional<QString> toQString(const std::optional<std::string>& text) {
    return text ? std::optional(QString::fromStdString(*text)) : std::nullopt;
}

// What is read out of a control beside its text, and the notes that are shown below it.
void describe(QWidget& control, const QString& name, const std::optional<std::string>& refusal = {},
              const std::optional<std::string>& conflict = {}) {
    const auto notes = QString::fromStdString(refusal.value_or("") + (refusal && conflict ? " " : "") +
                                              conflict.value_or(""));
    if (control.accessibleName() != name) {
        control.setAccessibleName(name);
    }
    if (control.accessibleDescription() != notes) {
        control.setAccessibleDescription(notes);
    }
}

// As wide with either of its texts, so that nothing moves when a recording begins.
Button* recordButton(const QString& text) {
    auto* button = new Button("Cancel");
    const int width = button->sizeHint().width();
    button->setText(text);
    button->setMinimumWidth(std::max(width, button->sizeHint().width()));
    return button;
}

} // namespace

ShortcutsSectionView::ShortcutsSectionView(SettingsModel& model)
    : settings_(model, [this] { refresh(); })
    , changes_(model.observe([this] { refresh(); })) {
    auto* groups = new QVBoxLayout(this);
    groups->setContentsMargins(look::ringRoom, 0, look::ringRoom, 0);
    groups->setSpacing(look::groupGap);
    addHyperKey(*groups);
    addCommands(*groups);
    groups->addStretch();
    refresh();
}

void ShortcutsSectionView::addHyperKey(QLayout& groups) {
    auto* group = new Group("Hyper Key");
    explanation_ = new Note(std::nullopt, TextRole::secondary);
    group->card().add(new FormRow(explanation_));
    hyperValue_ = new ShortcutField;
    hyperRecord_ = recordButton("Record New Combination");
    auto* row = group->addRow("Hyper key", {hyperValue_, hyperRecord_});
    hyperRefusal_ = row->addNote(std::nullopt);
    connect(hyperRecord_, &QAbstractButton::clicked, this, [this] { settings_.toggleHyperKey(); });
    groups.addWidget(group);
}

void ShortcutsSectionView::addCommands(QLayout& groups) {
    auto* group = new Group("Commands");
    auto* digits = new ShortcutField;
    digits->set("hyper + 1…9", false);
    digitsConflict_ =
        group->addRow("Move the window to the zone with that number", {digits})->addNote(Symbol::warning);
    for (const auto& row : settings_.commandRows()) {
        CommandView view{.value = new ShortcutField,
                         .record = recordButton("Record"),
                         .reset = new Button("Reset"),
                         .refusal = nullptr,
                         .conflict = nullptr};
        auto* line = group->addRow(QString::fromStdString(row.name), {view.value, view.record, view.reset});
        view.refusal = line->addNote(std::nullopt);
        view.conflict = line->addNote(Symbol::warning);
        const auto command = row.command;
        connect(view.record, &QAbstractButton::clicked, this, [this, command] { settings_.toggle(command); });
        connect(view.reset, &QAbstractButton::clicked, this, [this, command] { settings_.reset(command); });
        commands_.push_back(view);
    }
    groups.addWidget(group);
}

void ShortcutsSectionView::refresh() {
    const auto hyper = settings_.hyperKey();
    explanation_->setText(QString::fromStdString(hyper.explanation));
    explanation_->setSymbol(hyper.isUnavailable ? std::optional(Symbol::warning) : std::nullopt);
    hyperValue_->set(QString::fromStdString(hyper.value), hyper.isRecording);
    hyperValue_->setAccessibleName(QString::fromStdString(hyper.spoken));
    hyperRecord_->setText(QString::fromStdString(hyper.button));
    hyperRecord_->setEnabled(!hyper.isUnavailable);
    describe(*hyperRecord_,
             QString("%1, Hyper key, %2").arg(hyperRecord_->text(), QString::fromStdString(hyper.spoken)),
             hyper.refusal);
    showOrHide(*hyperRefusal_, toQString(hyper.refusal));
    showOrHide(*digitsConflict_, toQString(settings_.digitsConflict()));
    const auto rows = settings_.commandRows();
    for (std::size_t index = 0; index < rows.size(); ++index) {
        const auto& row = rows[index];
        const auto& view = commands_[index];
        const auto name = QString::fromStdString(row.name);
        view.value->set(QString::fromStdString(row.value), row.isRecording);
        view.value->setAccessibleName(QString::fromStdString(row.spoken));
        view.record->setText(QString::fromStdString(row.button));
        view.record->setEnabled(row.canRecord);
        view.reset->setEnabled(row.canReset);
        describe(*view.record,
                 QString("%1, %2, %3").arg(view.record->text(), name, QString::fromStdString(row.spoken)),
                 row.refusal, row.conflict);
        describe(*view.reset, QString("Reset, %1").arg(name));
        showOrHide(*view.refusal, toQString(row.refusal));
        showOrHide(*view.conflict, toQString(row.conflict));
    }
}

} // namespace karto

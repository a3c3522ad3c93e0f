#include "Karto/Settings/Views/Spoken.h"

#include <QAbstractButton>
#include <QAccessibleWidget>

#include <algorithm>

namespace karto {

namespace {

class Voice final : public QAccessibleWidget, public QAccessibleValueInterface {
public:
    explicit Voice(QWidget* widget)
        : QAccessibleWidget(widget) {}

    [[nodiscard]] QAccessible::Role role() const override {
        const auto* spoken = this->spoken();
        return spoken != nullptr ? spoken->spokenRole() : QAccessibleWidget::role();
    }

    [[nodiscard]] QAccessible::State state() const override {
        auto state = QAccessibleWidget::state();
        if (const auto* button = this->button(); button != nullptr && button->isCheckable()) {
            if (role() == QAccessible::ListItem) {
                state.selectable = true;
                state.selected = button->isChecked();
            } else {
                state.checkable = true;
                state.checked = button->isChecked();
            }
        }
        return state;
    }

    [[nodiscard]] void* interface_cast(QAccessible::InterfaceType type) override {
        const auto* spoken = this->spoken();
        return type == QAccessible::ValueInterface && spoken != nullptr && spoken->spokenValue()
                   ? static_cast<QAccessibleValueInterface*>(this)
                   : QAccessibleWidget::interface_cast(type);
    }

    [[nodiscard]] QStringList actionNames() const override {
        QStringList names;
        for (const auto& action : actions()) {
            names << action.name;
        }
        return names + QAccessibleWidget::actionNames();
    }

    void doAction(const QString& name) override {
        const auto own = actions();
        const auto action = std::ranges::find(own, name, &Spoken::Action::name);
        if (action != own.end()) {
            action->perform();
        } else {
            QAccessibleWidget::doAction(name);
        }
    }

    [[nodiscard]] QStringList keyBindingsForAction(const QString& name) const override {
        const auto own = actions();
        const auto action = std::ranges::find(own, name, &Spoken::Action::name);
        return action != own.end() && !action->keys.isEmpty() ? QStringList{action->keys} : QStringList();
    }

    [[nodiscard]] QVariant currentValue() const override { return value().now; }

    [[nodiscard]] QVariant minimumValue() const override { return value().least; }

    [[nodiscard]] QVariant maximumValue() const override { return value().most; }

    [[nodiscard]] QVariant minimumStepSize() const override { return value().step; }

    void setCurrentValue(const QVariant& value) override {
        if (auto* spoken = this->spoken()) {
            spoken->setSpokenValue(value.toDouble());
        }
    }

private:
    // Null while the widget is being destroyed.
    [[nodiscard]] Spoken* spoken() const { return dynamic_cast<Spoken*>(object()); }

    [[nodiscard]] QAbstractButton* button() const { return qobject_cast<QAbstractButton*>(object()); }

    [[nodiscard]] Spoken::Value value() const {
        const auto* spoken = this->spoken();
        return spoken != nullptr ? spoken->spokenValue().value_or(Spoken::Value()) : Spoken::Value();
    }

    [[nodiscard]] std::vector<Spoken::Action> actions() const {
        auto* spoken = this->spoken();
        if (spoken == nullptr || !widget()->isEnabled()) {
            return {};
        }
        auto actions = spoken->spokenActions();
        if (auto* button = this->button(); button != nullptr && actions.empty()) {
            actions.push_back({.name = pressAction(), .keys = {}, .perform = [button] { button->click(); }});
        }
        return actions;
    }
};

QAccessibleInterface* voiceOf(const QString& /*className*/, QObject* object) {
    return dynamic_cast<Spoken*>(object) != nullptr ? new Voice(qobject_cast<QWidget*>(object)) : nullptr;
}

} // namespace

void Spoken::introduce() { QAccessible::installFactory(&voiceOf); }

} // namespace karto

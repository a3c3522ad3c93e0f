#pragma once
// What a screen reader is told of widgets that the toolkit knows nothing of.

#include <QAccessible>
#include <QString>

#include <functional>
#include <optional>
#include <vector>

namespace karto {

// A widget that says itself what it is. Its name is the widget's accessible name; a button can be pressed
// unless it has other actions, and says in the manner of its role whether it is checked.
class Spoken {
public:
    struct Action {
        QString name;
        // That do the same; may be empty.
        QString keys;
        std::function<void()> perform;
    };

    // As a person reads it.
    struct Value {
        double now = 0;
        double least = 0;
        double most = 0;
        double step = 0;
    };

    Spoken() = default;
    virtual ~Spoken() = default;
    Spoken(Spoken&&) = delete;
    Spoken& operator=(Spoken&&) = delete;
    Spoken(const Spoken&) = delete;
    Spoken& operator=(const Spoken&) = delete;

    [[nodiscard]] virtual QAccessible::Role spokenRole() const = 0;

    // Beside those that every widget has; the usual one first.
    [[nodiscard]] virtual std::vector<Action> spokenActions() { return {}; }

    [[nodiscard]] virtual std::optional<Value> spokenValue() const { return {}; }

    virtual void setSpokenValue(double /*value*/) {}

    // Has screen readers hear of all such widgets. Once more changes nothing.
    static void introduce();
};

} // namespace karto

#include "Karto/Platform/Linux/QtKeyEvents.h"

#include <QCoreApplication>
#include <QKeyEvent>
#include <QObject>

#include <optional>
#include <tuple>
#include <utility>

namespace karto {

namespace {

bool isModifier(int key) {
    switch (key) {
    case Qt::Key_Shift:
    case Qt::Key_Control:
    case Qt::Key_Meta:
    case Qt::Key_Alt:
    case Qt::Key_AltGr:
    case Qt::Key_Mode_switch:
    case Qt::Key_Super_L:
    case Qt::Key_Super_R:
    case Qt::Key_Hyper_L:
    case Qt::Key_Hyper_R:
    case Qt::Key_CapsLock:
    case Qt::Key_NumLock:
    case Qt::Key_ScrollLock: return true;
    default: return false;
    }
}

} // namespace

class QtKeyEvents::Filter final : public QObject {
public:
    explicit Filter(ProgramKeyCode programKeyCode)
        : programKeyCode_(std::move(programKeyCode)) {}

    void begin(std::function<KeyEventAnswer(const KeyEvent&)> onEvent, ModifierEvents& modifiers) {
        onEvent_ = std::make_shared<const Observer>(std::move(onEvent));
        modifiers_ = modifiers.observe([this](ModifierFlags held) {
            held_ = held;
            std::ignore = tell({.kind = KeyEvent::Kind::modifiersChanged, .keyCode = {}, .modifiers = held});
        });
        held_ = modifiers.held();
        qApp->installEventFilter(this);
    }

    void end() {
        onEvent_.reset();
        modifiers_ = {};
    }

protected:
    bool eventFilter(QObject* watched, QEvent* event) override {
        // A window hears of a key before the control in it that has the focus.
        if (!watched->isWindowType()) {
            return false;
        }
        switch (event->type()) {
        case QEvent::ShortcutOverride:
            // What is recorded is no shortcut of the window, nor are its repetitions.
            if (onEvent_ || swallowed_ == static_cast<const QKeyEvent&>(*event).nativeScanCode()) {
                event->accept();
                return true;
            }
            return false;
        case QEvent::KeyPress: return isSwallowed(static_cast<const QKeyEvent&>(*event));
        case QEvent::KeyRelease: return isReleaseSwallowed(static_cast<const QKeyEvent&>(*event));
        default: return false;
        }
    }

private:
    using Observer = std::function<KeyEventAnswer(const KeyEvent&)>;

    bool isSwallowed(const QKeyEvent& event) {
        // Modifiers are heard of otherwise, wherever the keyboard goes.
        if (isModifier(event.key())) {
            return false;
        }
        const auto key = event.nativeScanCode();
        if (event.isAutoRepeat()) {
            return swallowed_ == key;
        }
        const bool swallows =
            onEvent_ &&
            tell({.kind = KeyEvent::Kind::keyDown, .keyCode = programKeyCode_(key), .modifiers = held_}) ==
                KeyEventAnswer::swallow;
        swallowed_ = swallows ? std::optional(key) : std::nullopt;
        return swallows;
    }

    bool isReleaseSwallowed(const QKeyEvent& event) {
        if (swallowed_ != event.nativeScanCode()) {
            return false;
        }
        if (!event.isAutoRepeat()) {
            swallowed_.reset();
        }
        return true;
    }

    [[nodiscard]] KeyEventAnswer tell(const KeyEvent& event) const {
        const auto observer = onEvent_;
        return observer ? (*observer)(event) : KeyEventAnswer::passOn;
    }

    ProgramKeyCode programKeyCode_;
    std::shared_ptr<const Observer> onEvent_;
    Registration modifiers_;
    ModifierFlags held_;
    // The server's code of the key whose press was swallowed, until it comes up.
    std::optional<std::uint32_t> swallowed_;
};

QtKeyEvents::QtKeyEvents(ModifierEvents& modifiers, ProgramKeyCode programKeyCode)
    : modifiers_(modifiers)
    , filter_(std::make_shared<Filter>(std::move(programKeyCode))) {}

QtKeyEvents::~QtKeyEvents() = default;

Registration QtKeyEvents::observe(std::function<KeyEventAnswer(const KeyEvent&)> onEvent) {
    filter_->begin(std::move(onEvent), modifiers_);
    return Registration([filter = std::weak_ptr(filter_)] {
        if (const auto remaining = filter.lock()) {
            remaining->end();
        }
    });
}

} // namespace karto

#pragma once
// The controls of the program's windows, painted alike on every desktop in its own colours.

#include "Karto/Settings/Views/Spoken.h"
#include "Karto/Settings/Views/Symbols.h"

#include <QCheckBox>
#include <QLabel>
#include <QPushButton>
#include <QScrollBar>
#include <QSlider>

#include <cstdint>
#include <optional>

namespace karto {

enum class TextRole : std::uint8_t { title, head, body, secondary, caption, error };

// Text that follows the desktop's font and colours.
class Text final : public QLabel {
public:
    explicit Text(TextRole role, const QString& text = {}, QWidget* parent = nullptr);

    // With the mouse, to be copied.
    void makeSelectable();
    // Gives up the middle of its text where there is no room for all of it.
    void setElided();

    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override;

protected:
    void changeEvent(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    void adopt();

    TextRole role_;
    bool isAdopting_ = false;
    bool isElided_ = false;
};

// A line of text with its symbol before it.
class Note final : public QWidget {
public:
    Note(std::optional<Symbol> symbol, TextRole role, const QString& text = {}, QWidget* parent = nullptr);

    void setText(const QString& text) { text_->setText(text); }

    void setSymbol(std::optional<Symbol> symbol);

    [[nodiscard]] QString text() const { return text_->text(); }

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    std::optional<Symbol> symbol_;
    TextRole role_;
    Text* text_;
};

class Switch final : public QCheckBox {
public:
    explicit Switch(QWidget* parent = nullptr);

    [[nodiscard]] QSize sizeHint() const override;

    [[nodiscard]] QSize minimumSizeHint() const override { return sizeHint(); }

protected:
    void paintEvent(QPaintEvent* event) override;
    [[nodiscard]] bool hitButton(const QPoint& position) const override;
};

class Button : public QPushButton {
public:
    explicit Button(const QString& text, QWidget* parent = nullptr);
    Button(const QString& text, Symbol symbol, QWidget* parent = nullptr);

    [[nodiscard]] QSize sizeHint() const override;

    [[nodiscard]] QSize minimumSizeHint() const override { return sizeHint(); }

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    std::optional<Symbol> symbol_;
};

// Opens a menu, of which it is the owner. A screen reader has the menu's items without opening it, too.
class MenuButton final : public Button, public Spoken {
public:
    explicit MenuButton(const QString& text, QWidget* parent = nullptr);

    [[nodiscard]] QAccessible::Role spokenRole() const override { return QAccessible::ButtonMenu; }

    [[nodiscard]] std::vector<Action> spokenActions() override;
};

// Square, with a symbol alone; its help is its tooltip and its accessible name.
class IconButton final : public QAbstractButton {
public:
    IconButton(Symbol symbol, const QString& help, QWidget* parent = nullptr);

    void set(Symbol symbol, const QString& help);

    [[nodiscard]] QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    Symbol symbol_;
};

class Slider final : public QSlider, public Spoken {
public:
    explicit Slider(QWidget* parent = nullptr);

    // What a person reads at the first position, and how much more at each further one.
    void setScale(double first, double step);

    [[nodiscard]] QAccessible::Role spokenRole() const override { return QAccessible::Slider; }

    [[nodiscard]] std::vector<Action> spokenActions() override;
    [[nodiscard]] std::optional<Value> spokenValue() const override;
    void setSpokenValue(double value) override;

    [[nodiscard]] QSize sizeHint() const override;

    [[nodiscard]] QSize minimumSizeHint() const override { return sizeHint(); }

protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void hideEvent(QHideEvent* event) override;

    // The wheel scrolls the form.
    void wheelEvent(QWheelEvent* event) override;

private:
    [[nodiscard]] int valueAt(qreal x) const;

    double scaleFirst_ = 0;
    double scaleStep_ = 1;
};

// Thin, and all of it the part that is held: it stands in a margin.
class ScrollBar final : public QScrollBar {
public:
    explicit ScrollBar(QWidget* parent = nullptr);

    [[nodiscard]] QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;
};

} // namespace karto

#pragma once
// Grouped forms: a head, and below it a card of rows, each with its label on the left and its control on the
// right.

#include "Karto/Settings/Views/Controls.h"
#include "Karto/Settings/Views/Spoken.h"

#include <QWidget>

#include <initializer_list>
#include <optional>

class QVBoxLayout;

namespace karto {

class FormRow final : public QWidget {
public:
    explicit FormRow(QWidget* label, std::initializer_list<QWidget*> controls = {});

    // A line below the row that belongs to it, hidden while it has no text.
    Note* addNote(std::optional<Symbol> symbol);

private:
    QVBoxLayout* lines_;
};

// Sets the text and shows the note, or hides it.
void showOrHide(Note& note, const std::optional<QString>& text);

// Adds a column within a section, from whose sides buttons stand out by the room for the ring of their focus.
QVBoxLayout* addInset(QVBoxLayout& section);

class Card final : public QWidget, public Spoken {
public:
    // role: of what its rows are together.
    explicit Card(QAccessible::Role role = QAccessible::Grouping);

    void add(QWidget* row);

    [[nodiscard]] QAccessible::Role spokenRole() const override { return role_; }

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QAccessible::Role role_;
    QVBoxLayout* rows_;
};

// A card with its head. An empty head takes no room.
class Group final : public QWidget {
public:
    explicit Group(const QString& head, QWidget* parent = nullptr);

    [[nodiscard]] Card& card() { return *card_; }

    FormRow* addRow(const QString& label, std::initializer_list<QWidget*> controls = {});

private:
    Card* card_;
};

} // namespace karto

#pragma once
// The update window: what it is about and what goes on, with the buttons for what a person may want next.

#include "Karto/Updates/UpdateView.h"

#include <QDialog>

class QHBoxLayout;
class QLabel;
class QProgressBar;
class QTextEdit;

namespace karto {

class Card;

class UpdateWindowView : public QDialog {
public:
    // onIntent: what the person chooses.
    explicit UpdateWindowView(std::function<void(UpdateIntent)> onIntent);

    void tell(const UpdateView& view);

    // Escape, and the window manager's way to close it.
    void reject() override;

protected:
    bool event(QEvent* event) override;

private:
    // Colours that follow the desktop's.
    void dress();
    // The height of the notes, which follows from text and font.
    void fit();
    [[nodiscard]] QPixmap icon() const;
    void putButtons(const std::vector<UpdateButton>& buttons);

    std::function<void(UpdateIntent)> onIntent_;
    QLabel* icon_;
    QLabel* heading_;
    QLabel* text_;
    Card* notesCard_;
    QTextEdit* notes_;
    QProgressBar* progress_;
    QLabel* progressText_;
    QHBoxLayout* buttons_;
    UpdateView view_;
};

} // namespace karto

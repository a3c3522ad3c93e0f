#pragma once
// A shortcut in a frame, lit while it is being recorded.

#include <QLabel>

namespace karto {

class ShortcutField final : public QLabel {
public:
    ShortcutField();

    void set(const QString& shortcut, bool isRecording);

    [[nodiscard]] QSize sizeHint() const override;

    [[nodiscard]] QSize minimumSizeHint() const override { return sizeHint(); }

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    bool isRecording_ = false;
};

} // namespace karto

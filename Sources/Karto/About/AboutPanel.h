#pragma once
// The panel that says what the program is and which build of it runs.

#include "Karto/Platform/ApplicationHost.h"

#include <QDialog>

class QLabel;

namespace karto {

class AboutPanel : public QDialog {
public:
    AboutPanel();

    void tell(const About& about);

protected:
    void changeEvent(QEvent* event) override;

private:
    // Fonts and colours that follow the desktop's.
    void dress();

    QLabel* icon_;
    QLabel* name_;
    QLabel* credits_;
    bool isDressing_ = false;
};

} // namespace karto

#pragma once
// The panel that says what the program is and which build of it runs.

#include "Karto/Platform/ApplicationHost.h"

#include <QDialog>

class QLabel;

namespace karto {

class Text;

class AboutPanel : public QDialog {
public:
    AboutPanel();

    void tell(const About& about);

protected:
    void changeEvent(QEvent* event) override;

private:
    // An icon in the desktop's colours.
    void dress();

    QLabel* icon_;
    Text* name_;
    Text* credits_;
};

} // namespace karto

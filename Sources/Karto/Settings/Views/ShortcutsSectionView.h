#pragma once
// The hyper combination and the keys of the commands.

#include "Karto/Settings/ShortcutSettings.h"
#include "Karto/Settings/Views/Form.h"
#include "Karto/Settings/Views/ShortcutField.h"

#include <vector>

namespace karto {

class ShortcutsSectionView final : public QWidget {
public:
    explicit ShortcutsSectionView(SettingsModel& model);

private:
    struct CommandView {
        ShortcutField* value = nullptr;
        Button* record = nullptr;
        Button* reset = nullptr;
        Note* refusal = nullptr;
        Note* conflict = nullptr;
    };

    void addHyperKey(QLayout& groups);
    void addCommands(QLayout& groups);
    void refresh();

    ShortcutSettings settings_;
    Note* explanation_ = nullptr;
    ShortcutField* hyperValue_ = nullptr;
    Button* hyperRecord_ = nullptr;
    Note* hyperRefusal_ = nullptr;
    Note* digitsConflict_ = nullptr;
    std::vector<CommandView> commands_;
    Registration changes_;
};

} // namespace karto

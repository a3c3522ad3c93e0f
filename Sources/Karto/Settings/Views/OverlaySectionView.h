#pragma once
// How the overlay looks: sliders, a colour, and the way back to the defaults.

#include "Karto/Settings/SettingsModel.h"
#include "Karto/Settings/Views/Form.h"

#include <functional>
#include <vector>

namespace karto {

class OverlaySectionView final : public QWidget {
public:
    // pickColor: opens the window's colour panel.
    OverlaySectionView(SettingsModel& model, std::function<void()> pickColor);

private:
    struct SliderView {
        Slider* slider = nullptr;
        Text* value = nullptr;
    };

    void addSlider(std::size_t index, Group& group);
    void refresh();

    SettingsModel& model_;
    std::vector<SliderView> sliders_;
    QAbstractButton* color_ = nullptr;
    Button* reset_ = nullptr;
    bool isRefreshing_ = false;
    Registration changes_;
};

} // namespace karto

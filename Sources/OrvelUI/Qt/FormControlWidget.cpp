#include "OrvelUI/Qt/FormControlWidget.h"

#include "OrvelCore/Match.h"
#include "OrvelUI/Qt/CornerPickerWidget.h"
#include "OrvelUI/Qt/FormChoices.h"
#include "OrvelUI/Qt/FormInputs.h"
#include "OrvelUI/Qt/FormPictures.h"
#include "OrvelUI/Qt/RowActionsWidget.h"

namespace OrvelUI {

FormControlWidget* makeControl(const FormControl& control, QWidget* parent) {
    using Widget = FormControlWidget*;
    return OrvelCore::match(
        control, [](const NoControl&) -> Widget { return nullptr; },
        [&](const RowActions&) -> Widget { return new RowActionsWidget(parent); },
        [&](const SettingsSwitch&) -> Widget { return new SettingsSwitchWidget(parent); },
        [&](const IntensitySlider&) -> Widget { return new IntensitySliderWidget(parent); },
        [&](const ChoiceStrip&) -> Widget { return new ChoiceStripWidget(parent); },
        [&](const StyleThumbnails&) -> Widget { return new StyleThumbnailsWidget(parent); },
        [&](const CornerPicker&) -> Widget { return new CornerPickerWidget(parent); },
        [&](const TextField&) -> Widget { return new TextFieldWidget(parent); },
        [&](const AppChoiceTiles&) -> Widget { return new AppChoiceTilesWidget(parent); },
        [&](const MiniDesktop&) -> Widget { return new MiniDesktopWidget(parent); },
        [&](const MenuBarDrawing&) -> Widget { return new MenuBarControl(parent); });
}

}  // namespace OrvelUI

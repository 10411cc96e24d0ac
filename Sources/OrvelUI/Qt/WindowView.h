#pragma once

#include <QWidget>
#include <memory>
#include <optional>
#include <vector>

#include "OrvelCore/Observed.h"
#include "OrvelUI/Qt/FormStyle.h"

namespace OrvelUI {

/// The content of an ordinary window. It observes its model and the desktop's appearance.
class WindowView : public QWidget {
  public:
    WindowView();

    /// Always draws in this style from now on, whatever the desktop's settings are.
    void fixStyle(const FormStyle& style);
    /// Shows changes now. Otherwise they are shown in a later turn of the loop.
    void refresh();
    /// Stops using the model, which may be destroyed from now on.
    void leaveModel();

  protected:
    /// Shows the current state of the model.
    virtual void showModel(const FormStyle& style) = 0;
    void follow(std::vector<OrvelCore::Subscription> observations);
    void scheduleRefresh();
    FormStyle style() const;

  private:
    bool isLeft_ = false;
    bool isRefreshDue_ = false;
    std::optional<FormStyle> fixedStyle_;
    std::vector<OrvelCore::Subscription> observations_;
    OrvelCore::Subscription appearance_;
};

}  // namespace OrvelUI

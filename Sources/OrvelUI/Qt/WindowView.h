#pragma once

#include <QWidget>
#include <memory>
#include <optional>
#include <vector>

#include "OrvelCore/Observed.h"
#include "OrvelUI/Qt/FormStyle.h"

namespace OrvelUI {

/// The content of an ordinary window: follows its model and the desktop's appearance.
class WindowView : public QWidget {
  public:
    WindowView();

    /// Draws in this style from now on, whatever the desktop asks for.
    void fixStyle(const FormStyle& style);
    /// Shows at once what has changed; by itself the view waits for the end of the turn.
    void refresh();
    /// Takes no more notice of the model, which may go from now on.
    void leaveModel();

  protected:
    /// Shows the model as it is now.
    virtual void showModel(const FormStyle& style) = 0;
    void follow(std::vector<OrvelCore::Observation> observations);
    void scheduleRefresh();
    FormStyle style() const;

  private:
    bool isLeft_ = false;
    bool isRefreshDue_ = false;
    std::optional<FormStyle> fixedStyle_;
    std::vector<OrvelCore::Observation> observations_;
    std::shared_ptr<void> appearance_;
};

}  // namespace OrvelUI

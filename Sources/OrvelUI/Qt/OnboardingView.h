#pragma once

#include <vector>

#include "OrvelUI/OnboardingContent.h"
#include "OrvelUI/Qt/FormButtons.h"
#include "OrvelUI/Qt/FormPictures.h"
#include "OrvelUI/Qt/FormView.h"
#include "OrvelUI/Qt/WindowView.h"

namespace OrvelUI {

/// The first-run guide: one step above the footer. Observes the model, which must outlive it, and
/// the desktop's appearance.
class OnboardingView final : public WindowView {
  public:
    explicit OnboardingView(OnboardingModel& model);

    QSize sizeHint() const override;

  protected:
    void showModel(const FormStyle& style) override;
    void resizeEvent(QResizeEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

  private:
    void arrangeFooter();
    OnboardingModel& model_;
    FormView* form_;
    PageDotsWidget* dots_;
    FormButtonWidget* back_;
    FormButtonWidget* secondary_;
    FormButtonWidget* primary_;
    std::optional<OrvelCore::OnboardingStep> shownStep_;
};

}  // namespace OrvelUI

#pragma once

#include <QWidget>
#include <vector>

#include "OrvelUI/Linux/FormButtons.h"
#include "OrvelUI/Linux/FormPictures.h"
#include "OrvelUI/Linux/FormView.h"
#include "OrvelUI/OnboardingContent.h"

namespace OrvelUI {

/// The first-run guide's content: one step over the footer. Follows the model, which must outlive
/// it, and the desktop's appearance.
class OnboardingView final : public QWidget {
  public:
    static constexpr double width = 640;   ///< Points.
    static constexpr double height = 480;  ///< Points.

    explicit OnboardingView(OnboardingModel& model);

    void fixStyle(const FormStyle& style);
    void refresh();
    QSize sizeHint() const override;

  protected:
    void resizeEvent(QResizeEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

  private:
    void scheduleRefresh();
    void arrangeFooter();
    FormStyle style() const;

    OnboardingModel& model_;
    std::optional<FormStyle> fixedStyle_;
    FormView* form_;
    PageDotsWidget* dots_;
    FormButtonWidget* back_;
    FormButtonWidget* secondary_;
    FormButtonWidget* primary_;
    std::optional<OrvelCore::OnboardingStep> shownStep_;
    bool isRefreshDue_ = false;
    std::vector<OrvelCore::Observation> observations_;
    std::shared_ptr<void> appearance_;
};

}  // namespace OrvelUI

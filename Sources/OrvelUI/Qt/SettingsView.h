#pragma once

#include <vector>

#include "OrvelUI/Qt/FormButtons.h"
#include "OrvelUI/Qt/FormView.h"
#include "OrvelUI/Qt/WindowView.h"
#include "OrvelUI/SettingsPanes.h"

namespace OrvelUI {

/// One pane in the sidebar.
class SidebarItemWidget final : public FormOption {
  public:
    explicit SidebarItemWidget(QWidget* parent) : FormOption(QAccessible::PageTab, parent) {}

    void setContent(const SettingsSidebar::Item& item, const FormStyle& style);
    QSize sizeHint() const override;

  protected:
    void paintEvent(QPaintEvent* event) override;

  private:
    SettingsSidebar::Item item_;
    FormStyle style_;
};

/// The content of the Settings window: the sidebar and the chosen pane. Observes the model, which
/// must outlive it, and the desktop's appearance.
class SettingsView final : public WindowView {
  public:
    explicit SettingsView(SettingsModel& model);

    QSize sizeHint() const override;

  protected:
    void showModel(const FormStyle& style) override;
    void resizeEvent(QResizeEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

  private:
    SettingsModel& model_;
    std::vector<SidebarItemWidget*> items_;
    FormView* form_ = nullptr;
    std::optional<SettingsPane> shownPane_;
};

}  // namespace OrvelUI

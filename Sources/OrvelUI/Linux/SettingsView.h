#pragma once

#include <QWidget>
#include <vector>

#include "OrvelUI/Linux/FormButtons.h"
#include "OrvelUI/Linux/FormView.h"
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

/// The Settings window's content: the sidebar and the pane that is chosen in it. Follows the model,
/// which must outlive it, and the desktop's appearance.
class SettingsView final : public QWidget {
  public:
    static constexpr double width = 720;   ///< Points.
    static constexpr double height = 520;  ///< Points.

    explicit SettingsView(SettingsModel& model);

    /// Draws in this style from now on, whatever the desktop asks for.
    void fixStyle(const FormStyle& style);
    /// Shows at once what has changed; by itself the view waits for the end of the turn.
    void refresh();
    QSize sizeHint() const override;

  protected:
    void resizeEvent(QResizeEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

  private:
    void scheduleRefresh();
    FormStyle style() const;

    SettingsModel& model_;
    std::optional<FormStyle> fixedStyle_;
    std::vector<SidebarItemWidget*> items_;
    FormView* form_;
    std::optional<SettingsPane> shownPane_;
    bool isRefreshDue_ = false;
    std::vector<OrvelCore::Observation> observations_;
    std::shared_ptr<void> appearance_;
};

}  // namespace OrvelUI

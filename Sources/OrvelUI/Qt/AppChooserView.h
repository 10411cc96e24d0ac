#pragma once

#include <QListView>
#include <functional>

#include "OrvelUI/AppChooserModel.h"
#include "OrvelUI/Qt/FormButtons.h"
#include "OrvelUI/Qt/FormInputs.h"
#include "OrvelUI/Qt/WindowView.h"

namespace OrvelUI {

/// All installed apps, with a field to search them. Only visible rows are drawn and load their
/// icons.
class AppChooserView final : public WindowView {
  public:
    using Done = std::function<void(const std::vector<std::string>& bundleIDs)>;

    /// `done` is called once with the chosen identifiers; empty if the choice was cancelled.
    AppChooserView(std::unique_ptr<AppChooserModel> model, Done done);
    ~AppChooserView() override;

    QSize sizeHint() const override;

  protected:
    void showModel(const FormStyle& style) override;
    void resizeEvent(QResizeEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

  private:
    class Rows;
    class Delegate;
    class List;

    void finish(bool adds);

    std::unique_ptr<AppChooserModel> model_;
    Done done_;
    TextFieldWidget* search_;
    Rows* rows_;
    Delegate* delegate_;
    List* list_;
    FormLabel* nothing_;
    FormButtonWidget* cancel_;
    FormButtonWidget* add_;
};

}  // namespace OrvelUI

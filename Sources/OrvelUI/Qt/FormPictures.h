#pragma once

#include "OrvelUI/Controls.h"
#include "OrvelUI/Qt/FormControlWidget.h"
#include "OrvelUI/Qt/FrameTimer.h"
#include "OrvelUI/Qt/KeycapsWidget.h"
#include "OrvelUI/Qt/MenuBarPictures.h"

namespace OrvelUI {

/// A desktop that blurs, locks and unlocks in a loop; a locked desktop if nothing may move.
class MiniDesktopWidget final : public FormControlWidget {
  public:
    explicit MiniDesktopWidget(QWidget* parent);

    void setContent(const FormRow& row, const FormStyle& style) override;
    QSize sizeHint() const override;
    Place place() const override { return Place::below; }

  protected:
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

  private:
    void updateMoving();

    bool moves_ = false;
    double seconds_ = 0;
    FrameTimer frames_{this};
};

class MenuBarControl final : public FormControlWidget {
  public:
    explicit MenuBarControl(QWidget* parent);

    void setContent(const FormRow& row, const FormStyle& style) override;
    QSize sizeHint() const override { return drawing_->sizeHint(); }
    Place place() const override { return Place::below; }

  protected:
    void resizeEvent(QResizeEvent* event) override;

  private:
    MenuBarDrawingWidget* drawing_;
};

/// Keycaps that pulse to ask the user to press them.
class PulsingKeycapsWidget final : public QWidget {
  public:
    explicit PulsingKeycapsWidget(QWidget* parent);

    void setContent(const PulsingKeycaps& content, const FormStyle& style);
    QSize sizeHint() const override;

  protected:
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

  private:
    void updatePulse();

    KeycapsWidget* caps_;
    bool pulses_ = false;
    double glow_ = 0;
    FormStyle style_;
    FrameTimer frames_{this};
};

/// A ring that rotates while something is checked.
class SpinnerWidget final : public QWidget {
  public:
    explicit SpinnerWidget(QWidget* parent);

    void setContent(const FormStyle& style);
    QSize sizeHint() const override;

  protected:
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

  private:
    FormStyle style_;
    double turn_ = 0;
    FrameTimer frames_{this};
};

class PageDotsWidget final : public QWidget {
  public:
    explicit PageDotsWidget(QWidget* parent);

    void setContent(const PageDots& dots, const FormStyle& style);
    QSize sizeHint() const override;

  protected:
    void paintEvent(QPaintEvent* event) override;

  private:
    PageDots dots_;
    FormStyle style_;
};

}  // namespace OrvelUI

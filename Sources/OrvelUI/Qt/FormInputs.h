#pragma once

#include <QAbstractSlider>
#include <QLineEdit>

#include "OrvelUI/Qt/FormControlWidget.h"
#include "OrvelUI/Qt/FrameTimer.h"
#include "OrvelUI/Qt/PressableButton.h"

namespace OrvelUI {

/// An on-off switch in the colours of a window. Its knob slides when the state changes while the
/// switch is visible.
class SettingsSwitchWidget final : public FormControlWidget {
  public:
    explicit SettingsSwitchWidget(QWidget* parent);

    void setContent(const FormRow& row, const FormStyle& style) override;
    QSize sizeHint() const override;

  private:
    class Button;

    Button* button_;
};

/// The slider itself. The keyboard moves it like Qt's own slider.
class IntensityTrack final : public QAbstractSlider {
  public:
    explicit IntensityTrack(QWidget* parent);

    void setContent(const IntensitySlider& slider, const FormStyle& style);
    const IntensitySlider& content() const { return slider_; }
    QSize sizeHint() const override;

  protected:
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void sliderChange(SliderChange change) override;
    /// Ignored, so that scrolling the form never changes a value.
    void wheelEvent(QWheelEvent* event) override;

  private:
    void moveTo(double x);
    double positionOf(int value) const;

    IntensitySlider slider_;
    FormStyle style_;
};

class IntensitySliderWidget final : public FormControlWidget {
  public:
    explicit IntensitySliderWidget(QWidget* parent);

    void setContent(const FormRow& row, const FormStyle& style) override;
    QSize sizeHint() const override;
    Place place() const override { return Place::stretched; }

  protected:
    void resizeEvent(QResizeEvent* event) override;

  private:
    IntensityTrack* track_;
    FormLabel* softer_;
    FormLabel* stronger_;
};

class TextFieldWidget final : public FormControlWidget {
  public:
    explicit TextFieldWidget(QWidget* parent);

    void setContent(const FormRow& row, const FormStyle& style) override;
    QSize sizeHint() const override;
    Place place() const override { return Place::stretched; }

  protected:
    void resizeEvent(QResizeEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    void typed(const QString& text);
    void show(const QString& text);

    QLineEdit* edit_;
    TextField field_;
    FormStyle style_;
};

}  // namespace OrvelUI

#pragma once

#include <QFont>
#include <QLabel>
#include <QPainter>
#include <QWidget>

#include "OrvelUI/FormColors.h"
#include "OrvelUI/Qt/Drawing.h"

namespace OrvelUI {

/// How the controls of a window are drawn.
struct FormStyle {
    FormColors colors;
    bool reduceMotion = false;

    /// The style that matches the desktop's current settings.
    static FormStyle current();
    bool operator==(const FormStyle&) const = default;
};

/// A painter for a widget with points as its unit.
class PointPainter final : public QPainter {
  public:
    explicit PointPainter(QWidget* widget);
    /// The widget's rectangle in points.
    QRectF rect() const;
    void face(const QRectF& rect, double radius, const FormColors::Face& face);

  private:
    QWidget* widget_;
};

/// A paragraph as a Qt label, which wraps it and exposes it to screen readers.
class FormLabel final : public QLabel {
  public:
    explicit FormLabel(QWidget* parent);

    /// An empty text hides the label.
    void setContent(const FormText& text, const FormColors& colors);
    bool isHeading() const { return isHeading_; }
    /// The width of the text in one line, in Qt units.
    int naturalWidth() const;

  private:
    bool isHeading_ = false;
};

/// A symbol in a square widget.
class SymbolWidget final : public QWidget {
  public:
    explicit SymbolWidget(QWidget* parent) : QWidget(parent) {}

    /// `name` is read out; empty for a decorative symbol.
    void setContent(const SymbolContent& symbol, const std::string& name = {});
    QSize sizeHint() const override;

  protected:
    void paintEvent(QPaintEvent* event) override;

  private:
    SymbolContent symbol_;
};

/// Returns a product text in the desktop's terms.
QString shownText(const std::string& text);

}  // namespace OrvelUI

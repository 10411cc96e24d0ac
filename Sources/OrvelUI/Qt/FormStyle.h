#pragma once

#include <QFont>
#include <QLabel>
#include <QPainter>
#include <QWidget>

#include "OrvelUI/FormColors.h"
#include "OrvelUI/Qt/Drawing.h"

namespace OrvelUI {

/// How the controls of a window are drawn at present.
struct FormStyle {
    FormColors colors;
    bool reduceMotion = false;

    /// What the desktop asks for now.
    static FormStyle current();
    bool operator==(const FormStyle&) const = default;
};

/// Paints a widget in points.
class PointPainter final : public QPainter {
  public:
    explicit PointPainter(QWidget* widget);
    /// The widget's rectangle.
    QRectF rect() const;
    void face(const QRectF& rect, double radius, const FormColors::Face& face);

  private:
    QWidget* widget_;
};

/// A paragraph in Qt's own label, which wraps it and reads it out.
class FormLabel final : public QLabel {
  public:
    explicit FormLabel(QWidget* parent);

    /// Hides itself for an empty text.
    void setContent(const FormText& text, const FormColors& colors);
    bool isHeading() const { return isHeading_; }
    /// Of the text in one line, in Qt's units.
    int naturalWidth() const;

  private:
    bool isHeading_ = false;
};

/// A sign in a square of its own.
class SymbolWidget final : public QWidget {
  public:
    explicit SymbolWidget(QWidget* parent) : QWidget(parent) {}

    /// `name` is read out; empty for an ornament.
    void setContent(const SymbolContent& symbol, const std::string& name = {});
    QSize sizeHint() const override;

  protected:
    void paintEvent(QPaintEvent* event) override;

  private:
    SymbolContent symbol_;
};

/// The product's words in those of the desktop.
QString shownText(const std::string& text);

}  // namespace OrvelUI

#include "OrvelUI/Qt/FormStyle.h"

#include <cmath>

#include "OrvelSystem/Qt/Appearance.h"
#include "OrvelUI/Linux/Wording.h"

namespace OrvelUI {

FormStyle FormStyle::current() {
    using Theme = SettingsTheme;
    const auto& appearance = OrvelSystem::Appearance::shared();
    return {.colors = {.theme = {appearance.isDark() ? Theme::Scheme::dark : Theme::Scheme::light,
                                 appearance.increasesContrast() ? Theme::Contrast::increased
                                                                : Theme::Contrast::standard}},
            .reduceMotion = appearance.reducesMotion()};
}

PointPainter::PointPainter(QWidget* widget) : QPainter(widget), widget_(widget) {
    setRenderHint(Antialiasing);
    setRenderHint(SmoothPixmapTransform);
    scale(Drawing::uiScale(), Drawing::uiScale());
}

QRectF PointPainter::rect() const {
    const double scale = Drawing::uiScale();
    return {0, 0, widget_->width() / scale, widget_->height() / scale};
}

void PointPainter::face(const QRectF& rect, double radius, const FormColors::Face& face) {
    const QRectF sharp = Drawing::snapped(*this, rect);
    setPen(Qt::NoPen);
    setBrush(Drawing::color(face.fill));
    drawRoundedRect(sharp, radius, radius);
    setBrush(Qt::NoBrush);
    setPen(QPen(Drawing::color(face.border), 1));
    drawRoundedRect(sharp.adjusted(0.5, 0.5, -0.5, -0.5), radius - 0.5, radius - 0.5);
}

FormLabel::FormLabel(QWidget* parent) : QLabel(parent) {
    setTextFormat(Qt::PlainText);
    setWordWrap(true);
    setMargin(0);
    // A right-to-left name still starts beside its icon.
    setAlignment(Qt::AlignLeft | Qt::AlignVCenter | Qt::AlignAbsolute);
}

void FormLabel::setContent(const FormText& text, const FormColors& colors) {
    const auto label = styled(text, colors);
    isHeading_ = text.role == TextRole::paneTitle || text.role == TextRole::sectionTitle ||
                 text.role == TextRole::heroTitle;
    setFont(Drawing::font(label.size * Drawing::uiScale(), label.weight));
    QPalette inks = palette();
    inks.setColor(QPalette::WindowText, Drawing::color(label.ink));
    setPalette(inks);
    const QString shown = Drawing::text(label);
    if (shown != QLabel::text()) setText(shown);
    setVisible(!shown.isEmpty());
}

int FormLabel::naturalWidth() const {
    return static_cast<int>(std::ceil(QFontMetricsF(font()).horizontalAdvance(text()))) + 1;
}

void SymbolWidget::setContent(const SymbolContent& symbol, const std::string& name) {
    setAccessibleName(shownText(name));
    if (symbol == symbol_) return;
    symbol_ = symbol;
    setFixedSize(sizeHint());
    update();
}

QSize SymbolWidget::sizeHint() const {
    return Drawing::scaled({0, 0, symbol_.size, symbol_.size}).size();
}

void SymbolWidget::paintEvent(QPaintEvent*) {
    PointPainter painter(this);
    Drawing::symbol(painter, symbol_, painter.rect().center());
}

QString shownText(const std::string& text) {
    return QString::fromStdString(Wording::shown(text));
}

}  // namespace OrvelUI

#include "OrvelUI/Qt/FormInputs.h"

#include <QEvent>
#include <QMouseEvent>
#include <QPainter>
#include <algorithm>
#include <cmath>

#include "OrvelUI/Qt/ControlDrawing.h"
#include "OrvelUI/Qt/FormAccessibility.h"

namespace OrvelUI {

namespace {

// In points.
constexpr double switchWidth = 38;
constexpr double switchHeight = 22;
constexpr double knobRadius = 9;
constexpr double trackHeight = 4;
constexpr double sliderHeight = 28;
constexpr double fieldHeight = 28;

void knob(QPainter& painter, QPointF centre, double radius, const QColor& fill) {
    painter.setPen(Qt::NoPen);
    painter.setBrush(QColor(0, 0, 0, 50));
    painter.drawEllipse(centre + QPointF(0, 0.8), radius + 0.3, radius + 0.3);
    painter.setBrush(fill);
    painter.drawEllipse(centre, radius, radius);
}

}  // namespace

class SettingsSwitchWidget::Button final : public PressableButton {
  public:
    explicit Button(QWidget* parent) : PressableButton(parent) {
        setCheckable(true);
        setFixedSize(Drawing::scaled({0, 0, switchWidth, switchHeight}).size());
        connect(this, &QAbstractButton::clicked, this, [this] {
            const auto set = set_;
            set(!isChecked());
        });
    }

    void setContent(const QString& name, const SettingsSwitch& content, const FormStyle& style) {
        setAccessibleName(name);
        setAccessibleDescription(shownText(content.hint));
        set_ = content.set;
        style_ = style;
        const double end = content.on ? 1 : 0;
        const bool slides = isVisible() && content.on != isChecked() && !style.reduceMotion;
        setChecked(content.on);
        if (slides)
            slideTo(end);
        else if (!sliding_.isRunning())
            position_ = end;
        update();
    }

  protected:
    void paintEvent(QPaintEvent*) override {
        PointPainter painter(this);
        const QRectF rect = painter.rect();
        const auto on = style_.colors.track(true);
        const auto off = style_.colors.track(false);
        painter.setPen(Qt::NoPen);
        painter.setBrush(Drawing::mixed(off.fill, on.fill, position_));
        painter.drawRoundedRect(rect, rect.height() / 2, rect.height() / 2);
        const double inset = 2;
        const double radius = rect.height() / 2 - inset;
        const double travel = rect.width() - 2 * inset - 2 * radius;
        knob(painter, {inset + radius + position_ * travel, rect.center().y()}, radius,
             Drawing::color(on.text));
        if (hasFocus())
            Drawing::focusRing(painter, rect, rect.height() / 2,
                               style_.colors.text(TextRole::label));
    }

  private:
    void slideTo(double end) { frames(position_, end); }
    void frames(double from, double end) {
        sliding_.start([this, from, end](double seconds) {
            const double t = std::min(1.0, seconds / IslandSwitch::slideSeconds);
            position_ = from + (end - from) * t * (2 - t);
            update();
            return t < 1;
        });
    }

    Handler<bool> set_;
    FormStyle style_;
    double position_ = 0;
    FrameTimer sliding_{this};
};

SettingsSwitchWidget::SettingsSwitchWidget(QWidget* parent)
    : FormControlWidget(parent), button_(new Button(this)) {
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

void SettingsSwitchWidget::setContent(const FormRow& row, const FormStyle& style) {
    button_->setContent(shownText(row.label.text), std::get<SettingsSwitch>(row.control), style);
}

QSize SettingsSwitchWidget::sizeHint() const {
    return button_->size();
}

IntensityTrack::IntensityTrack(QWidget* parent) : QAbstractSlider(parent) {
    installFormAccessibility();
    setOrientation(Qt::Horizontal);
    setFocusPolicy(Qt::TabFocus);
    setPageStep(8);
}

void IntensityTrack::setContent(const IntensitySlider& slider, const FormStyle& style) {
    slider_ = slider;
    style_ = style;
    const QSignalBlocker silent(this);
    setRange(slider.lowest, slider.highest);
    setValue(slider.value);
    update();
}

QSize IntensityTrack::sizeHint() const {
    return Drawing::scaled({0, 0, 150, sliderHeight}).size();
}

double IntensityTrack::positionOf(int value) const {
    const double room = width() / Drawing::uiScale() - 2 * knobRadius;
    const double share =
        static_cast<double>(value - minimum()) / std::max(1, maximum() - minimum());
    return knobRadius + share * room;
}

void IntensityTrack::moveTo(double x) {
    const double room = width() - 2 * knobRadius * Drawing::uiScale();
    const double share = (x - knobRadius * Drawing::uiScale()) / std::max(1.0, room);
    setValue(minimum() + static_cast<int>(std::lround(share * (maximum() - minimum()))));
}

void IntensityTrack::mousePressEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton) return;
    setFocus(Qt::MouseFocusReason);
    moveTo(event->position().x());
}

void IntensityTrack::mouseMoveEvent(QMouseEvent* event) {
    if (event->buttons().testFlag(Qt::LeftButton)) moveTo(event->position().x());
}

void IntensityTrack::sliderChange(SliderChange change) {
    QAbstractSlider::sliderChange(change);
    if (change != SliderValueChange || signalsBlocked()) return;
    const auto set = slider_.set;
    set(value());
}

void IntensityTrack::wheelEvent(QWheelEvent* event) {
    event->ignore();
}

void IntensityTrack::paintEvent(QPaintEvent*) {
    PointPainter painter(this);
    const auto& colors = style_.colors;
    const QRectF rect = painter.rect();
    const double middle = rect.center().y();
    const double x = positionOf(value());
    const QRectF groove(0, middle - trackHeight / 2, rect.width(), trackHeight);
    painter.setPen(Qt::NoPen);
    painter.setBrush(Drawing::color(colors.track(false).fill));
    painter.drawRoundedRect(groove, trackHeight / 2, trackHeight / 2);
    painter.setBrush(Drawing::color(colors.track(true).fill));
    painter.drawRoundedRect(QRectF(groove.topLeft(), QSizeF(x, trackHeight)), trackHeight / 2,
                            trackHeight / 2);
    if (slider_.tick) {
        const double at = positionOf(*slider_.tick);
        painter.setBrush(Drawing::color(colors.text(TextRole::note)));
        const double top = middle + knobRadius - 0.5;
        const QPointF mark[] = {{at, top}, {at + 4, top + 5}, {at - 4, top + 5}};
        painter.drawPolygon(mark, 3);
    }
    knob(painter, {x, middle}, knobRadius - 1, Drawing::color(colors.track(true).text));
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(Drawing::color(hasFocus() ? colors.accent() : colors.track(false).fill),
                        hasFocus() ? 2.5 : 1));
    painter.drawEllipse(QPointF(x, middle), knobRadius - 1, knobRadius - 1);
}

IntensitySliderWidget::IntensitySliderWidget(QWidget* parent)
    : FormControlWidget(parent),
      track_(new IntensityTrack(this)),
      softer_(new FormLabel(this)),
      stronger_(new FormLabel(this)) {
    for (auto* label : {softer_, stronger_}) label->setWordWrap(false);
}

void IntensitySliderWidget::setContent(const FormRow& row, const FormStyle& style) {
    const auto& slider = std::get<IntensitySlider>(row.control);
    softer_->setContent({.text = IntensitySlider::softer, .role = TextRole::note}, style.colors);
    stronger_->setContent({.text = IntensitySlider::stronger, .role = TextRole::note},
                          style.colors);
    track_->setAccessibleName(shownText(row.label.text));
    if (row.note) track_->setAccessibleDescription(shownText(row.note->text));
    track_->setContent(slider, style);
}

QSize IntensitySliderWidget::sizeHint() const {
    const QSize track = track_->sizeHint();
    return {softer_->naturalWidth() + stronger_->naturalWidth() + track.width() * 3 / 2,
            track.height()};
}

void IntensitySliderWidget::resizeEvent(QResizeEvent*) {
    const int gap = Drawing::scaled({0, 0, 8, 8}).width();
    const int left = softer_->naturalWidth();
    const int right = stronger_->naturalWidth();
    softer_->setGeometry(0, 0, left, height());
    stronger_->setGeometry(width() - right, 0, right, height());
    track_->setGeometry(left + gap, 0, width() - left - right - 2 * gap, height());
}

TextFieldWidget::TextFieldWidget(QWidget* parent)
    : FormControlWidget(parent), edit_(new QLineEdit(this)) {
    edit_->setFrame(false);
    // The model keeps far less text; this limit only avoids wasted work.
    edit_->setMaxLength(4000);
    edit_->installEventFilter(this);
    connect(edit_, &QLineEdit::textEdited, this, [this](const QString& text) { typed(text); });
    connect(edit_, &QLineEdit::editingFinished, this, [this] {
        const auto finish = field_.finish;
        finish();
    });
}

void TextFieldWidget::setContent(const FormRow& row, const FormStyle& style) {
    field_ = std::get<TextField>(row.control);
    style_ = style;
    const auto face = style.colors.field();
    edit_->setFont(Drawing::font(13 * Drawing::uiScale(), LabelContent::Weight::regular));
    QPalette palette = edit_->palette();
    palette.setColor(QPalette::Base, Qt::transparent);
    palette.setColor(QPalette::Text, Drawing::color(face.text));
    palette.setColor(QPalette::PlaceholderText, Drawing::color(style.colors.prompt()));
    const auto selection = style.colors.chip(true);
    palette.setColor(QPalette::Highlight, Drawing::color(selection.fill));
    palette.setColor(QPalette::HighlightedText, Drawing::color(selection.text));
    edit_->setPalette(palette);
    edit_->setPlaceholderText(shownText(field_.prompt));
    edit_->setAccessibleName(shownText(row.label.text));
    edit_->setAccessibleDescription(shownText(field_.hint));
    show(QString::fromStdString(field_.text));
    update();
}

void TextFieldWidget::typed(const QString& text) {
    const auto type = field_.type;
    if (type) show(QString::fromStdString(type(text.toStdString())));
}

void TextFieldWidget::show(const QString& text) {
    if (text == edit_->text()) return;
    const int cursor = edit_->cursorPosition();
    edit_->setText(text);
    edit_->setCursorPosition(std::min<int>(cursor, static_cast<int>(text.size())));
}

QSize TextFieldWidget::sizeHint() const {
    return Drawing::scaled({0, 0, 260, fieldHeight}).size();
}

void TextFieldWidget::resizeEvent(QResizeEvent*) {
    const int inset = Drawing::scaled({0, 0, 8, 3}).width();
    edit_->setGeometry(rect().adjusted(inset, 2, -inset, -2));
}

bool TextFieldWidget::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::FocusIn || event->type() == QEvent::FocusOut) update();
    return FormControlWidget::eventFilter(watched, event);
}

void TextFieldWidget::paintEvent(QPaintEvent*) {
    PointPainter painter(this);
    painter.face(painter.rect(), 7, style_.colors.field());
    if (edit_->hasFocus())
        Drawing::focusRing(painter, painter.rect(), 7, style_.colors.focusRing());
}

}  // namespace OrvelUI

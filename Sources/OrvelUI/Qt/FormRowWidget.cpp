#include "OrvelUI/Qt/FormRowWidget.h"

#include <QAccessible>
#include <algorithm>

#include "OrvelUI/Qt/SceneDrawing.h"

namespace OrvelUI {

using Drawing::units;

namespace {

using Place = FormControlWidget::Place;

// In points.
constexpr double paddingX = 14;
constexpr double paddingY = 9;
constexpr double smallestHeight = 44;
constexpr double smallestTextHeight = 36;
constexpr double iconSide = 26;
constexpr double gap = 12;
constexpr double signSize = 13;

int heightAt(const QLabel* label, int width) {
    return label->isHidden() ? 0 : label->heightForWidth(width);
}

}  // namespace

NoteWidget::NoteWidget(QWidget* parent)
    : QWidget(parent), sign_(new SymbolWidget(this)), text_(new FormLabel(this)) {
    QSizePolicy policy(QSizePolicy::Preferred, QSizePolicy::Preferred);
    policy.setHeightForWidth(true);
    setSizePolicy(policy);
}

void NoteWidget::setContent(const std::optional<SettingsNote>& note, const FormStyle& style) {
    const bool warns = note && note->warning;
    const auto role = warns ? TextRole::warning : TextRole::note;
    text_->setContent({.text = note ? note->text : "", .role = role}, style.colors);
    sign_->setContent(
        {.name = "exclamationmark.triangle", .size = signSize, .ink = style.colors.error()});
    sign_->setVisible(warns);
    setVisible(note.has_value());
    if (warns && note != note_) {
        QAccessibleEvent event(text_, QAccessible::Alert);
        QAccessible::updateAccessibility(&event);
    }
    note_ = note;
    resizeEvent(nullptr);
    updateGeometry();
}

int NoteWidget::textLeft() const {
    return sign_->isHidden() ? 0 : units(signSize + 5);
}

int NoteWidget::heightForWidth(int width) const {
    return heightAt(text_, width - textLeft());
}

QSize NoteWidget::sizeHint() const {
    return {textLeft() + text_->naturalWidth(), text_->sizeHint().height()};
}

void NoteWidget::resizeEvent(QResizeEvent*) {
    sign_->move(0, units(1));
    text_->setGeometry(textLeft(), 0, width() - textLeft(), height());
}

AppIconWidget::AppIconWidget(QWidget* parent) : QWidget(parent) {
    setFixedSize(Drawing::scaled({0, 0, iconSide, iconSide}).size());
}

void AppIconWidget::setContent(const Icon& icon, const FormStyle& style) {
    icon_ = icon;
    style_ = style;
    update();
}

void AppIconWidget::paintEvent(QPaintEvent*) {
    PointPainter painter(this);
    Drawing::appIcon(painter, icon_, painter.rect(), style_.colors);
}

FormRowWidget::FormRowWidget(const FormRow& row, bool centred, QWidget* parent)
    : QWidget(parent),
      centred_(centred),
      icon_(row.icon ? new AppIconWidget(this) : nullptr),
      label_(new FormLabel(this)),
      note_(new NoteWidget(this)),
      control_(makeControl(row.control, this)) {
    QSizePolicy policy(QSizePolicy::Preferred, QSizePolicy::Fixed);
    policy.setHeightForWidth(true);
    setSizePolicy(policy);
    if (centred) label_->setAlignment(Qt::AlignHCenter);
}

void FormRowWidget::setContent(const FormRow& row, const FormStyle& style) {
    row_ = row;
    label_->setContent(row.label, style.colors);
    note_->setContent(row.note, style);
    if (icon_ != nullptr) icon_->setContent(row.icon.value_or(nullptr), style);
    if (control_ != nullptr) control_->setContent(row, style);
    arrange(width(), true);
    updateGeometry();
}

QSize FormRowWidget::sizeHint() const {
    return {units(320), heightForWidth(units(320))};
}

void FormRowWidget::resizeEvent(QResizeEvent*) {
    arrange(width(), true);
}

int FormRowWidget::heightOf(const FormControlWidget* control, int width) const {
    return control->hasHeightForWidth() ? control->heightForWidth(width)
                                        : control->sizeHint().height();
}

QSize FormRowWidget::controlSize(int room) const {
    if (control_->place() == Place::stretched) {
        const int wide = room * 64 / 100;
        return {wide, heightOf(control_, wide)};
    }
    const QSize natural = control_->sizeHint();
    const int wide = std::min(natural.width(), room);
    return {wide, wide < natural.width() ? heightOf(control_, wide) : natural.height()};
}

int FormRowWidget::arrange(int width, bool place) const {
    const int padding = centred_ ? 0 : units(paddingX);
    int left = padding;
    const int right = width - padding;
    if (icon_ != nullptr) left += icon_->width() + units(gap);
    const bool hasText = !label_->isHidden();
    bool isBeside = control_ == nullptr;
    if (control_ != nullptr && control_->place() != Place::below && hasText && !centred_) {
        // The control is beside the text only if that leaves enough of the row for the text, or all
        // that the text needs.
        const int share = right - left - controlSize(right - left).width() - units(gap);
        isBeside = share >= std::min(label_->naturalWidth(), (right - left) * 35 / 100);
    }
    const int padded = centred_ ? 0 : units(paddingY);
    const int inner = isBeside ? arrangeBeside(left, right - left, false)
                               : arrangeBelow(left, right - left, false);
    const int smallest = units(control_ == nullptr ? smallestTextHeight : smallestHeight);
    const int height = centred_ ? inner : std::max(inner + 2 * padded, smallest);
    if (place) {
        if (isBeside)
            arrangeBeside(left, right - left, true);
        else
            arrangeBelow(left, right - left, true);
        if (icon_ != nullptr) icon_->move(padding, (height - icon_->height()) / 2);
    }
    return height;
}

int FormRowWidget::arrangeBeside(int left, int width, bool place) const {
    const QSize control = control_ == nullptr ? QSize(0, 0) : controlSize(width);
    const int textWidth = width - (control_ == nullptr ? 0 : control.width() + units(gap));
    const int labelHeight = heightAt(label_, textWidth);
    const bool hasNote = !note_->isHidden();
    const int noteGap = hasNote && labelHeight > 0 ? units(3) : 0;
    // Beside a wide control a note would be a narrow column, so it goes below both.
    const bool noteUnderBoth = hasNote && control.width() * 4 > width;
    const int noteWidth = noteUnderBoth ? width : textWidth;
    const int noteHeight = hasNote ? note_->heightForWidth(noteWidth) : 0;
    const int textHeight = noteUnderBoth ? labelHeight : labelHeight + noteGap + noteHeight;
    const int upper = std::max(textHeight, control.height());
    const int total = noteUnderBoth ? upper + units(5) + noteHeight : upper;
    if (place) {
        const int top = (height() - total) / 2;
        const int textTop = top + (upper - textHeight) / 2;
        label_->setGeometry(left, textTop, textWidth, labelHeight);
        note_->setGeometry(left,
                           noteUnderBoth ? top + upper + units(5) : textTop + labelHeight + noteGap,
                           noteWidth, noteHeight);
        if (control_ != nullptr)
            control_->setGeometry(left + width - control.width(),
                                  top + (upper - control.height()) / 2, control.width(),
                                  control.height());
    }
    return total;
}

int FormRowWidget::arrangeBelow(int left, int width, bool place) const {
    const int labelHeight = heightAt(label_, width);
    const int noteHeight = note_->isHidden() ? 0 : note_->heightForWidth(width);
    // Large controls take the whole row; others get their natural width.
    const int natural = control_->sizeHint().width();
    const bool fills = control_->hasHeightForWidth() && control_->place() == Place::below;
    const int controlWidth =
        fills || control_->place() == Place::stretched ? width : std::min(natural, width);
    const int controlHeight = heightOf(control_, controlWidth);
    const int gapAbove = labelHeight > 0 ? units(7) : 0;
    const int gapBelow = noteHeight > 0 ? units(6) : 0;
    const int total = labelHeight + gapAbove + controlHeight + gapBelow + noteHeight;
    if (place) {
        int y = (height() - total) / 2;
        label_->setGeometry(left, y, width, labelHeight);
        y += labelHeight + gapAbove;
        const bool inMiddle = centred_ || control_->place() == Place::below;
        control_->setGeometry(inMiddle ? left + (width - controlWidth) / 2 : left, y, controlWidth,
                              controlHeight);
        y += controlHeight + gapBelow;
        note_->setGeometry(left, y, width, noteHeight);
    }
    return total;
}

}  // namespace OrvelUI

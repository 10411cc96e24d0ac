#include "OrvelUI/Qt/IslandPasswordField.h"

#include <QAccessible>
#include <QGuiApplication>
#include <QInputMethodEvent>
#include <QKeyEvent>
#include <QStyleHints>
#include <algorithm>

#include <sodium.h>

#include "OrvelUI/Linux/Wording.h"
#include "OrvelUI/Qt/Drawing.h"
#include "OrvelUI/Qt/FieldEndButton.h"

namespace OrvelUI {

namespace {

// In points.
constexpr double textInset = 14;
constexpr double bulletSize = 6;
constexpr double bulletPitch = 10;
constexpr double caretHeight = 17;
constexpr double caretWidth = 1.5;
constexpr double placeholderSize = 13;
// The caret stops blinking after this many blinks, so that it costs nothing for the rest of the
// night.
constexpr int caretBlinkLimit = 5;

QRectF pointRect(const QWidget& widget) {
    const double s = Drawing::uiScale();
    return {0, 0, widget.width() / s, widget.height() / s};
}

}  // namespace

IslandPasswordField::IslandPasswordField(LockCardModel& model, double cornerRadius, QWidget* parent)
    : QWidget(parent), model_(model), cornerRadius_(cornerRadius), end_(new FieldEndButton(this)) {
    setFocusPolicy(Qt::StrongFocus);
    setAttribute(Qt::WA_InputMethodEnabled);
    setInputMethodHints(Qt::ImhHiddenText | Qt::ImhSensitiveData | Qt::ImhNoPredictiveText |
                        Qt::ImhNoAutoUppercase);
    connect(end_, &QAbstractButton::clicked, this, [this] { model_.submit(); });
}

void IslandPasswordField::setContent(const PasswordFieldContent& content) {
    if (content == content_) return;
    const auto before = std::exchange(content_, content);
    setAccessibleName(QString::fromStdString(Wording::shown(content.accessibleName)));
    setAccessibleDescription(QString::fromStdString(Wording::shown(content.accessibleHint)));
    setCursor(content.canType ? Qt::IBeamCursor : Qt::ArrowCursor);
    end_->setContent(content);
    if (content.bullets == 0) allSelected_ = false;
    if (content.bullets != before.bullets) {
        QAccessibleValueChangeEvent change(this, QString(static_cast<int>(content.bullets), u'•'));
        QAccessible::updateAccessibility(&change);
    }
    if (content.bullets != before.bullets || content.canType != before.canType) startCaret();
    // `FieldEndButton` draws the ring, so a change of the ring alone needs no update here.
    auto withRing = before;
    withRing.ringFraction = content.ringFraction;
    if (withRing != content) update();
}

bool IslandPasswordField::event(QEvent* event) {
    // No shortcut of any widget may intercept what is typed here.
    if (event->type() == QEvent::ShortcutOverride) {
        event->accept();
        return true;
    }
    return QWidget::event(event);
}

void IslandPasswordField::keyPressEvent(QKeyEvent* event) {
    const bool control = event->modifiers().testFlag(Qt::ControlModifier);
    switch (event->key()) {
        case Qt::Key_Return:
        case Qt::Key_Enter:
            model_.submit();
            return;
        case Qt::Key_Escape:
            if (onEscape)
                onEscape();
            else
                model_.deleteAll();
            return;
        case Qt::Key_Backspace:
            if (control || allSelected_)
                model_.deleteAll();
            else
                model_.deleteBackward();
            return;
        case Qt::Key_Delete:
            eraseSelection();
            return;
        case Qt::Key_U:
            if (control) model_.deleteAll();
            break;
        case Qt::Key_A:
            if (control) setAllSelected(content_.bullets > 0);
            break;
        default:
            break;
    }
    // Alt, Super and Control form commands, not text. AltGr is not among these modifiers.
    if (event->modifiers() & (Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier)) return;
    insert(event->text());
}

void IslandPasswordField::inputMethodEvent(QInputMethodEvent* event) {
    insert(event->commitString());
    event->accept();
}

QVariant IslandPasswordField::inputMethodQuery(Qt::InputMethodQuery query) const {
    switch (query) {
        case Qt::ImEnabled:
            return content_.canType;
        case Qt::ImCursorRectangle:
            return Drawing::scaled(QRectF(caretX(), 0, 1, pointRect(*this).height()));
        default:
            return QWidget::inputMethodQuery(query);
    }
}

void IslandPasswordField::insert(const QString& text) {
    if (text.isEmpty() || !std::ranges::all_of(text, [](QChar character) {
            return character.isPrint() || character.isSurrogate();
        }))
        return;
    eraseSelection();
    QByteArray utf8 = text.toUtf8();
    model_.type({utf8.constData(), static_cast<std::size_t>(utf8.size())});
    sodium_memzero(utf8.data(), static_cast<std::size_t>(utf8.size()));
}

void IslandPasswordField::eraseSelection() {
    if (!allSelected_) return;
    setAllSelected(false);
    model_.deleteAll();
}

void IslandPasswordField::setAllSelected(bool selected) {
    if (std::exchange(allSelected_, selected) != selected) update();
}

void IslandPasswordField::mousePressEvent(QMouseEvent*) {
    setFocus(Qt::MouseFocusReason);
    setAllSelected(false);
}

void IslandPasswordField::focusInEvent(QFocusEvent*) {
    startCaret();
}

void IslandPasswordField::focusOutEvent(QFocusEvent*) {
    startCaret();
}

void IslandPasswordField::startCaret() {
    caretLit_ = true;
    caretBlinks_ = 0;
    const int flash = QGuiApplication::styleHints()->cursorFlashTime();
    if (showsCaret() && flash > 0)
        caretTimer_.start(flash / 2, this);
    else
        caretTimer_.stop();
    update();
}

void IslandPasswordField::timerEvent(QTimerEvent*) {
    caretLit_ = !caretLit_;
    if (caretLit_ && ++caretBlinks_ >= caretBlinkLimit) caretTimer_.stop();
    const QRectF around(caretX() - 2, 0, caretWidth + 4, pointRect(*this).height());
    update(Drawing::scaled(around));
}

bool IslandPasswordField::showsCaret() const {
    return content_.canType && hasFocus() && !model_.staticPreview.get();
}

double IslandPasswordField::caretX() const {
    const double room = pointRect(*this).width() - textInset - PasswordFieldContent::endSide -
                        2 * PasswordFieldContent::endInset;
    if (content_.bullets == 0) return textInset - 3;
    return textInset + std::min(room, static_cast<double>(content_.bullets) * bulletPitch);
}

void IslandPasswordField::resizeEvent(QResizeEvent*) {
    const QRectF rect = pointRect(*this);
    end_->setGeometry(Drawing::scaled(
        {rect.width() - PasswordFieldContent::endInset - PasswordFieldContent::endSide,
         (rect.height() - PasswordFieldContent::endSide) / 2, PasswordFieldContent::endSide,
         PasswordFieldContent::endSide}));
}

bool IslandPasswordField::focusNextPrevChild(bool) {
    // No other widget accepts typing, so the focus stays here.
    return true;
}

void IslandPasswordField::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.scale(Drawing::uiScale(), Drawing::uiScale());

    const QRectF rect = Drawing::snapped(painter, pointRect(*this));
    painter.setPen(QPen(Drawing::color(content_.border), 1));
    painter.setBrush(Drawing::color(content_.fill));
    painter.drawRoundedRect(rect.adjusted(0.5, 0.5, -0.5, -0.5), cornerRadius_, cornerRadius_);

    const double middle = rect.center().y();
    const double room = rect.width() - textInset - PasswordFieldContent::endSide -
                        2 * PasswordFieldContent::endInset;
    if (content_.bullets == 0) {
        Drawing::label(painter,
                       {.text = content_.placeholder,
                        .tail = {},
                        .size = placeholderSize,
                        .ink = {Palette::lockInk, Palette::islandPlaceholderOpacity}},
                       {textInset, rect.top(), room, rect.height()});
    } else {
        const auto fitting = static_cast<std::size_t>(room / bulletPitch);
        const std::size_t shown = std::min(content_.bullets, fitting);
        const double right = caretX();
        if (allSelected_) {
            painter.setPen(Qt::NoPen);
            painter.setBrush(Drawing::color({Palette::accentDark, 0.35}));
            const double left = right - static_cast<double>(shown) * bulletPitch;
            painter.drawRoundedRect(
                QRectF(left - 1, middle - caretHeight / 2, right - left, caretHeight), 3, 3);
        }
        painter.setPen(Qt::NoPen);
        painter.setBrush(Drawing::color({Palette::lockInk, Palette::islandFieldTextOpacity}));
        for (std::size_t i = 0; i < shown; ++i) {
            const double left = right - static_cast<double>(shown - i) * bulletPitch;
            painter.drawEllipse(QRectF(left, middle - bulletSize / 2, bulletSize, bulletSize));
        }
    }
    if (showsCaret() && caretLit_) {
        painter.setPen(Qt::NoPen);
        painter.setBrush(Drawing::color({Palette::lockInk, Palette::islandFieldTextOpacity}));
        painter.drawRoundedRect(
            QRectF(caretX() - 1, middle - caretHeight / 2, caretWidth, caretHeight), caretWidth / 2,
            caretWidth / 2);
    }
}

}  // namespace OrvelUI

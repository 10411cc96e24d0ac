#include "OrvelUI/Qt/CardAccessibility.h"

#include <QAccessible>
#include <QAccessibleWidget>
#include <algorithm>

#include "OrvelUI/Qt/AppLockBadgeWidget.h"
#include "OrvelUI/Qt/IndicatorWidget.h"
#include "OrvelUI/Qt/IslandPasswordField.h"
#include "OrvelUI/Qt/NoticePillWidget.h"

namespace OrvelUI {

namespace {

/// A password field that exposes only the number of characters.
class FieldInterface final : public QAccessibleWidget, public QAccessibleTextInterface {
  public:
    explicit FieldInterface(IslandPasswordField* field)
        : QAccessibleWidget(field, QAccessible::EditableText), field_(field) {}

    QAccessible::State state() const override {
        QAccessible::State state = QAccessibleWidget::state();
        state.passwordEdit = true;
        state.editable = field_->content().canType;
        state.readOnly = !field_->content().canType;
        return state;
    }
    QString text(QAccessible::Text kind) const override {
        return kind == QAccessible::Value ? bullets() : QAccessibleWidget::text(kind);
    }
    void* interface_cast(QAccessible::InterfaceType type) override {
        if (type == QAccessible::TextInterface) return static_cast<QAccessibleTextInterface*>(this);
        return QAccessibleWidget::interface_cast(type);
    }

    void selection(int, int* start, int* end) const override { *start = *end = 0; }
    int selectionCount() const override { return 0; }
    void addSelection(int, int) override {}
    void removeSelection(int) override {}
    void setSelection(int, int, int) override {}
    int cursorPosition() const override { return characterCount(); }
    void setCursorPosition(int) override {}
    QString text(int start, int end) const override { return bullets().mid(start, end - start); }
    int characterCount() const override { return static_cast<int>(field_->content().bullets); }
    QRect characterRect(int) const override { return rect(); }
    int offsetAtPoint(const QPoint&) const override { return characterCount(); }
    void scrollToSubstring(int, int) override {}
    QString attributes(int, int* start, int* end) const override {
        *start = 0;
        *end = characterCount();
        return {};
    }

  private:
    QString bullets() const { return QString(characterCount(), u'•'); }

    IslandPasswordField* field_;
};

/// The closed badge is a single button.
class BadgeInterface final : public QAccessibleWidget {
  public:
    explicit BadgeInterface(AppLockBadgeWidget* badge)
        : QAccessibleWidget(badge, badge->isOpen() ? QAccessible::Grouping : QAccessible::Button),
          badge_(badge) {}

    QStringList actionNames() const override {
        return badge_->isOpen() ? QAccessibleWidget::actionNames() : QStringList{pressAction()};
    }
    void doAction(const QString& name) override {
        if (name == pressAction())
            badge_->tap();
        else
            QAccessibleWidget::doAction(name);
    }

  private:
    AppLockBadgeWidget* badge_;
};

/// A notice is a single text or a single button.
class NoticeInterface final : public QAccessibleWidget {
  public:
    explicit NoticeInterface(NoticePillWidget* pill)
        : QAccessibleWidget(
              pill, pill->content().isButton ? QAccessible::Button : QAccessible::StaticText),
          pill_(pill) {}

    QStringList actionNames() const override {
        return role() == QAccessible::Button ? QStringList{pressAction()}
                                             : QAccessibleWidget::actionNames();
    }
    void doAction(const QString& name) override {
        if (name == pressAction())
            pill_->tap();
        else
            QAccessibleWidget::doAction(name);
    }

  private:
    NoticePillWidget* pill_;
};

QAccessibleInterface* cardInterface(const QString&, QObject* object) {
    if (auto* field = dynamic_cast<IslandPasswordField*>(object)) return new FieldInterface(field);
    if (auto* badge = dynamic_cast<AppLockBadgeWidget*>(object)) return new BadgeInterface(badge);
    if (auto* pill = dynamic_cast<NoticePillWidget*>(object)) return new NoticeInterface(pill);
    if (auto* indicator = dynamic_cast<IndicatorWidget*>(object))
        return new QAccessibleWidget(indicator,
                                     indicator->content().kind == IndicatorContent::Kind::spinner
                                         ? QAccessible::ProgressBar
                                         : QAccessible::Graphic);
    if (auto* view = dynamic_cast<OverlayView*>(object))
        return new QAccessibleWidget(view, QAccessible::Grouping);
    return nullptr;
}

}  // namespace

void installCardAccessibility() {
    [[maybe_unused]] static const bool once = [] {
        QAccessible::installFactory(cardInterface);
        return true;
    }();
}

}  // namespace OrvelUI

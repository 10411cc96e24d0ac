#include "OrvelUI/Qt/FormAccessibility.h"

#include <QAccessible>
#include <QAccessibleWidget>

#include "OrvelUI/Qt/FormButtons.h"
#include "OrvelUI/Qt/FormInputs.h"
#include "OrvelUI/Qt/FormPictures.h"

namespace OrvelUI {

namespace {

class OptionInterface final : public QAccessibleWidget {
  public:
    explicit OptionInterface(FormOption* option)
        : QAccessibleWidget(option, option->role()), option_(option) {}

    QAccessible::State state() const override {
        auto state = QAccessibleWidget::state();
        state.checkable = true;
        state.checked = option_->isChecked();
        if (role() == QAccessible::PageTab) {
            state.selectable = true;
            state.selected = option_->isChecked();
        }
        return state;
    }
    QStringList actionNames() const override { return {pressAction(), setFocusAction()}; }
    void doAction(const QString& name) override {
        if (name == pressAction())
            option_->click();
        else
            QAccessibleWidget::doAction(name);
    }

  private:
    FormOption* option_;
};

/// A title whose text changes with the content below it.
class HeadingInterface final : public QAccessibleWidget {
  public:
    explicit HeadingInterface(FormLabel* label)
        : QAccessibleWidget(label, QAccessible::Heading), label_(label) {}

    QString text(QAccessible::Text kind) const override {
        return kind == QAccessible::Name ? label_->text() : QAccessibleWidget::text(kind);
    }

  private:
    FormLabel* label_;
};

/// A slider that describes what its value means.
class TrackInterface final : public QAccessibleWidget, public QAccessibleValueInterface {
  public:
    explicit TrackInterface(IntensityTrack* track)
        : QAccessibleWidget(track, QAccessible::Slider), track_(track) {}

    QString text(QAccessible::Text kind) const override {
        if (kind != QAccessible::Value) return QAccessibleWidget::text(kind);
        return QString::fromStdString(
            IntensitySlider::spokenValue(track_->value(), track_->content().tick));
    }
    void* interface_cast(QAccessible::InterfaceType type) override {
        if (type == QAccessible::ValueInterface)
            return static_cast<QAccessibleValueInterface*>(this);
        return QAccessibleWidget::interface_cast(type);
    }
    QVariant currentValue() const override { return track_->value(); }
    void setCurrentValue(const QVariant& value) override { track_->setValue(value.toInt()); }
    QVariant maximumValue() const override { return track_->maximum(); }
    QVariant minimumValue() const override { return track_->minimum(); }
    QVariant minimumStepSize() const override { return track_->singleStep(); }

  private:
    IntensityTrack* track_;
};

QAccessibleInterface* formInterface(const QString&, QObject* object) {
    if (auto* option = dynamic_cast<FormOption*>(object)) return new OptionInterface(option);
    if (auto* track = dynamic_cast<IntensityTrack*>(object)) return new TrackInterface(track);
    if (auto* label = dynamic_cast<FormLabel*>(object); label != nullptr && label->isHeading())
        return new HeadingInterface(label);
    if (auto* picture = dynamic_cast<MiniDesktopWidget*>(object))
        return new QAccessibleWidget(picture, QAccessible::Graphic);
    if (auto* spinner = dynamic_cast<SpinnerWidget*>(object))
        return new QAccessibleWidget(spinner, QAccessible::ProgressBar);
    if (auto* dots = dynamic_cast<PageDotsWidget*>(object))
        return new QAccessibleWidget(dots, QAccessible::StaticText);
    return nullptr;
}

}  // namespace

void installFormAccessibility() {
    [[maybe_unused]] static const bool once = [] {
        QAccessible::installFactory(formInterface);
        return true;
    }();
}

}  // namespace OrvelUI
